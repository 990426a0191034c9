#pragma once

#include <string_view>

namespace tessavo {

enum class BoxIcon { none, error };
enum class BoxButtons { ok, okCancel, yesNoCancel };
enum class BoxAnswer { ok, cancel, yes, no };

/// Title of every message box of the program.
inline constexpr std::string_view applicationTitle = "Tessavo Velmira";

/// Shows a modal message and waits for the answer. Callable from any thread.
///
/// The window implements it with a dialog, the command line with standard error, tests with a list.
class IMessageBox {
 public:
    virtual ~IMessageBox() = default;
    virtual BoxAnswer show(std::string_view text, BoxIcon icon, BoxButtons buttons) = 0;

    void showError(std::string_view text) { show(text, BoxIcon::error, BoxButtons::ok); }
    void showPlain(std::string_view text) { show(text, BoxIcon::none, BoxButtons::ok); }
};

}  // namespace tessavo
