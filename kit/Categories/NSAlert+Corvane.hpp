#pragma once

#include "platform/views/Alert.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace corvane {

// The application's standard alerts. Each returns a new alert; showing it is the caller's
// business, except for the confirmation sheet, which shows itself.

// An alert with the texts that are given (a nil text is left unset) and no buttons of its own.
ns::Ref<ns::Alert> cv_alertWithMessage(const std::optional<std::string>& message);
ns::Ref<ns::Alert> cv_alertWithMessage(const std::optional<std::string>& message,
                                       const std::optional<std::string>& info);
// "Yes" (1000), "No" (1001).
ns::Ref<ns::Alert> cv_yesNoAlertWithMessage(const std::optional<std::string>& message,
                                            const std::optional<std::string>& info);
// "OK" (1000), "Check for Updates…" (1001); a nil info reads that the version may be out of date.
ns::Ref<ns::Alert> cv_okUpdateAlertWithMessage(const std::optional<std::string>& message,
                                               const std::optional<std::string>& info);
// "OK" (1000), "Cancel" (1001).
ns::Ref<ns::Alert> cv_okCancelAlertWithMessage(const std::optional<std::string>& message,
                                               const std::optional<std::string>& info);
// "Yes" (1000), "No" (1001), "Cancel" (1002).
ns::Ref<ns::Alert> cv_yesNoCancelAlertWithMessage(const std::optional<std::string>& message,
                                                  const std::optional<std::string>& info);
// "OK" (1000), "Open File…" (1001), "Show in Finder…" (1002).
ns::Ref<ns::Alert> cv_confirmationAlertWithMessage(const std::optional<std::string>& message);

// Shows the confirmation alert as a sheet on the window and returns it at once. When the sheet
// ends, the alert's panel is taken off the screen, the handler (if any) is called with the
// response, and then "Open File…" opens the file and "Show in Finder…" reveals it.
ns::Ref<ns::Alert> cv_beginConfirmationAlertForURL(const std::string& path, const ns::Ref<ns::Window>& window,
                                                   const std::optional<std::string>& message,
                                                   std::function<void(int64_t)> completionHandler);

// The default informative text of cv_okUpdateAlertWithMessage.
inline constexpr const char* CVUpdateAlertDefaultInfo =
    "Please check that you are using the most up to date version of Corvane.";

} // namespace corvane
