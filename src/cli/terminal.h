#pragma once

namespace tessavo::cli {

/// Readies the standard streams: text in UTF-8, also on a console that has another code page.
void prepareStandardStreams();

/// Whether a person sees standard error as it is written.
[[nodiscard]] bool standardErrorIsTerminal();

}  // namespace tessavo::cli
