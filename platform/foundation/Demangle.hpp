#pragma once

#include <string>
#include <typeinfo>

namespace ns {

// The readable name of a C++ type.
std::string demangle(const std::type_info& type);

// The class name a user sees: the type's name without its namespaces ("ns::View" gives "View").
std::string shortTypeName(const std::type_info& type);

} // namespace ns
