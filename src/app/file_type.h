#pragma once

namespace tessavo {

/// Registers settings files (*.eqs) with the shell for this user, so that they open with this program.
///
/// Does nothing when they do already, when the user has them opened by another program, and on systems where
/// the package registers the type. A registration that fails is no error.
void registerFileType();

}  // namespace tessavo
