// The application's standard alerts, each drawn as its panel with its texts and buttons.
#include "apps/gallery/Gallery.hpp"

#include "kit/Categories/NSAlert+Corvane.hpp"

namespace {

ns::Ref<ns::View> panel(const ns::Ref<ns::Alert>& alert) {
    return alert->window()->contentView();
}

gallery::SceneRegistration yesNo{
    {70, "alert-yes-no", "Yes / No alert", "cv_yesNoAlertWithMessage: \"Yes\" answers 1000, \"No\" 1001.",
     [] {
         return panel(corvane::cv_yesNoAlertWithMessage("Approve the March pay run?",
                                                        "Payslips are sent to 214 employees once approved."));
     }}};

gallery::SceneRegistration okUpdate{
    {70, "alert-ok-update", "OK / Check for Updates alert",
     "cv_okUpdateAlertWithMessage with no informative text shows its default one.", [] {
         return panel(
             corvane::cv_okUpdateAlertWithMessage("This file was made by a newer version.", std::nullopt));
     }}};

gallery::SceneRegistration okCancel{
    {70, "alert-ok-cancel", "OK / Cancel alert",
     "cv_okCancelAlertWithMessage: \"OK\" answers 1000, \"Cancel\" 1001.", [] {
         return panel(corvane::cv_okCancelAlertWithMessage("Discard the changes to this employee?",
                                                           "The changes made since the last save are lost."));
     }}};

gallery::SceneRegistration yesNoCancel{
    {70, "alert-yes-no-cancel", "Yes / No / Cancel alert",
     "cv_yesNoCancelAlertWithMessage: \"Cancel\" answers 1002.", [] {
         return panel(corvane::cv_yesNoCancelAlertWithMessage("Save the timesheet before closing?",
                                                              "Choosing No closes it without saving."));
     }}};

gallery::SceneRegistration confirmation{{70, "alert-confirmation", "Confirmation alert",
                                         "cv_confirmationAlertWithMessage: \"Open File\u2026\" opens the "
                                         "file and \"Show in Finder\u2026\" reveals it "
                                         "after the handler has run.",
                                         [] {
                                             return panel(corvane::cv_confirmationAlertWithMessage(
                                                 "The payslips were exported to payslips-march.pdf."));
                                         }}};

gallery::SceneRegistration plain{{70, "alert-plain", "Plain alert",
                                  "cv_alertWithMessage with no buttons: the alert shows its own \"OK\".", [] {
                                      return panel(corvane::cv_alertWithMessage("The export has finished."));
                                  }}};

} // namespace
