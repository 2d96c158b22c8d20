#include "kit/Categories/NSAlert+Corvane.hpp"

#include "platform/system/Workspace.hpp"

namespace corvane {

namespace {

ns::Ref<ns::Alert> alertWithButtons(const std::optional<std::string>& message,
                                    const std::optional<std::string>& info,
                                    std::initializer_list<const char*> titles) {
    auto alert = cv_alertWithMessage(message, info);
    for (const char* title : titles)
        alert->addButtonWithTitle(title);
    return alert;
}

} // namespace

ns::Ref<ns::Alert> cv_alertWithMessage(const std::optional<std::string>& message) {
    return cv_alertWithMessage(message, std::nullopt);
}

ns::Ref<ns::Alert> cv_alertWithMessage(const std::optional<std::string>& message,
                                       const std::optional<std::string>& info) {
    auto alert = ns::Alert::make();
    if (message)
        alert->setMessageText(*message);
    if (info)
        alert->setInformativeText(*info);
    return alert;
}

ns::Ref<ns::Alert> cv_yesNoAlertWithMessage(const std::optional<std::string>& message,
                                            const std::optional<std::string>& info) {
    return alertWithButtons(message, info, {"Yes", "No"});
}

ns::Ref<ns::Alert> cv_okUpdateAlertWithMessage(const std::optional<std::string>& message,
                                               const std::optional<std::string>& info) {
    return alertWithButtons(message, info ? info : std::optional<std::string>(CVUpdateAlertDefaultInfo),
                            {"OK", "Check for Updates\u2026"});
}

ns::Ref<ns::Alert> cv_okCancelAlertWithMessage(const std::optional<std::string>& message,
                                               const std::optional<std::string>& info) {
    return alertWithButtons(message, info, {"OK", "Cancel"});
}

ns::Ref<ns::Alert> cv_yesNoCancelAlertWithMessage(const std::optional<std::string>& message,
                                                  const std::optional<std::string>& info) {
    return alertWithButtons(message, info, {"Yes", "No", "Cancel"});
}

ns::Ref<ns::Alert> cv_confirmationAlertWithMessage(const std::optional<std::string>& message) {
    return alertWithButtons(message, std::nullopt, {"OK", "Open File\u2026", "Show in Finder\u2026"});
}

ns::Ref<ns::Alert> cv_beginConfirmationAlertForURL(const std::string& path, const ns::Ref<ns::Window>& window,
                                                   const std::optional<std::string>& message,
                                                   std::function<void(int64_t)> completionHandler) {
    auto alert = cv_confirmationAlertWithMessage(message);
    alert->beginSheetModalForWindow(window, [alert, path, completionHandler](ns::ModalResponse response) {
        alert->window()->orderOut();
        if (completionHandler)
            completionHandler(response);
        if (response == ns::AlertThirdButtonReturn)
            ns::Workspace::shared()->selectFile(path);
        else if (response == ns::AlertSecondButtonReturn)
            ns::Workspace::shared()->openFile(path);
    });
    return alert;
}

} // namespace corvane
