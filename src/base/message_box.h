#pragma once

#include <string_view>

namespace tessavo {

/// Picture beside the text of a message.
enum class BoxIcon { none, error };
/// Buttons of a message, in the order in which they stand; the first is the default one.
enum class BoxButtons { ok, okCancel, yesNo, yesNoCancel };
/// Button that closed a message.
enum class BoxAnswer { ok, cancel, yes, no };

/// Title of every message box of the program.
inline constexpr std::string_view applicationTitle = "Tessavo Velmira";

/// Shows a modal message and waits for the answer. Callable from any thread.
///
/// The window implements it with a dialog, the command line with standard error, tests with a list.
class IMessageBox {
 public:
    virtual ~IMessageBox() = default;
    /// \param text UTF-8; lines are parted by "\n" or "\r\n"
    /// \return the button that was pressed; closing the message otherwise counts as "Cancel", or as "OK"
    ///     where that is the only button
    virtual BoxAnswer show(std::string_view text, BoxIcon icon, BoxButtons buttons) = 0;

    /// A message with the error picture and "OK".
    void showError(std::string_view text) { show(text, BoxIcon::error, BoxButtons::ok); }
    /// A message without a picture, with "OK".
    void showPlain(std::string_view text) { show(text, BoxIcon::none, BoxButtons::ok); }
};

}  // namespace tessavo
