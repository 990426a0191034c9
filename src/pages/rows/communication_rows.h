#pragma once

#include "pages/rows/control_row.h"

namespace tessavo {

/// Numbers of the communication page's controls.
namespace comm_id {
inline constexpr int saveGroup = 7001;
inline constexpr int loadGroup = 7002;
inline constexpr int softwareGroup = 7003;
inline constexpr int interfaceGroup = 7004;
inline constexpr int versionGroup = 7005;
inline constexpr int logGroup = 7006;
inline constexpr int firstSave = 7010;  ///< default set, then sets 1 to 5
inline constexpr int firstLoad = 7020;  ///< default set, then sets 1 to 5
inline constexpr int imagePath = 7030;
inline constexpr int selectImage = 7031;
inline constexpr int flashFile = 7032;
inline constexpr int transferLine = 7033;
inline constexpr int backUpTarget = 7034;  ///< hidden unless it is offered
inline constexpr int portList = 7040;
inline constexpr int refresh = 7041;
inline constexpr int hardwareVersion = 7050;
inline constexpr int softwareVersion = 7051;
inline constexpr int update = 7052;
inline constexpr int log = 7060;
inline constexpr int showStatus = 7061;
inline constexpr int showErrors = 7062;
inline constexpr int showSent = 7063;
inline constexpr int showReceived = 7064;
inline constexpr int clearLog = 7065;
}  // namespace comm_id

/// Rows of the page "Communication". The progress of a transfer and the log are its own controls.
[[nodiscard]] const ControlRows& communicationRows();

}  // namespace tessavo
