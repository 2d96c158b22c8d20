#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace ns {

// An unknown of the layout system: a named handle whose value the solver writes when asked to
// (Solver::updateVariables). Copies share the same variable; equality is identity, so two
// variables with the same name are still different unknowns.
class LayoutVariable {
public:
    explicit LayoutVariable(std::string name = {});

    const std::string& name() const { return m_data->name; }
    void setName(std::string name) { m_data->name = std::move(name); }

    // The last value written by a solver, or the value set here by the caller (an edit variable
    // starts from it). Zero for a new variable.
    double value() const { return m_data->value; }
    void setValue(double value) { m_data->value = value; }

    bool operator==(const LayoutVariable& other) const { return m_data == other.m_data; }
    std::size_t hash() const { return std::hash<const void*>{}(m_data.get()); }
    // What equality compares: the same for every copy, different for every variable.
    const void* identity() const { return m_data.get(); }

    // "name = value", or "<variable> = value" for an unnamed one.
    std::string description() const;

private:
    struct Data {
        std::string name;
        double value = 0;
    };
    std::shared_ptr<Data> m_data;
};

} // namespace ns

template <>
struct std::hash<ns::LayoutVariable> {
    std::size_t operator()(const ns::LayoutVariable& variable) const { return variable.hash(); }
};
