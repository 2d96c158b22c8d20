#pragma once

#include "platform/views/Window.hpp"

#include <functional>
#include <string>
#include <vector>

namespace ns {

class Button;

enum class AlertStyle : int64_t { Warning = 0, Informational = 1, Critical = 2 };

constexpr ModalResponse AlertFirstButtonReturn = 1000;
constexpr ModalResponse AlertSecondButtonReturn = 1001;
constexpr ModalResponse AlertThirdButtonReturn = 1002;

// A message with informative text and a row of buttons, shown application-modally or as a
// sheet on a window. The buttons answer 1000, 1001, 1002, ... in the order they were added; an
// alert given no buttons shows one "OK" button.
//
// Nothing is put on a screen: a modal run is answered by the modal responder (tests and
// headless runs install one); without one it answers the first button. A sheet waits until one
// of its buttons is clicked (performClick) or the window ends it.
class Alert : public Object {
public:
    using ModalResponder = std::function<ModalResponse(Alert&)>;

    static Ref<Alert> make() { return create<Alert>(); }

    const std::string& messageText() const { return m_messageText; }
    void setMessageText(std::string text);
    const std::string& informativeText() const { return m_informativeText; }
    void setInformativeText(std::string text);
    AlertStyle alertStyle() const { return m_alertStyle; }
    void setAlertStyle(AlertStyle style) { m_alertStyle = style; }

    // Adds a button at the end of the row; it answers 1000 plus its place.
    Ref<Button> addButtonWithTitle(std::string title);
    const std::vector<Ref<Button>>& buttons() const { return m_buttons; }

    // The alert's own panel, with its texts and buttons laid out.
    Ref<Window> window();

    ModalResponse runModal();
    static void setModalResponder(ModalResponder responder);
    // Shows the alert as a sheet on the window; the handler gets the response of the button
    // that ends it. A nil window runs the alert modally and calls the handler at once.
    void beginSheetModalForWindow(const Ref<Window>& window, std::function<void(ModalResponse)> handler);

    // The action of the alert's buttons: ends the sheet with the sender's response.
    void buttonPressed(const Value& sender);
    const ActionTable& actionTable() const override;

private:
    void buildPanel();

    std::string m_messageText;
    std::string m_informativeText;
    AlertStyle m_alertStyle = AlertStyle::Warning;
    std::vector<Ref<Button>> m_buttons;
    Ref<Window> m_window;
    bool m_panelBuilt = false;
};

} // namespace ns
