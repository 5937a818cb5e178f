// Times that cameras write.
#pragma once

#include <optional>
#include <string_view>

#include "base/file_time.h"

namespace kelvane {

// "2024:05:17 10:20:30" (EXIF) or "2024-05-17T10:20:30.5+02:00" (XMP), also without the time of day. Cameras write what
// their clock shows, and few say in which zone. So the clock is taken as it stands, as if it were UTC, and a zone is
// not looked at: the same picture has the same time on every computer, with and without that tag, and is shown with the
// time that its photographer knows. Nothing for what is no date of a calendar, such as the zeros of a camera that was
// never set. fraction: digits behind the point of the seconds, where they are told apart; others are ignored.
[[nodiscard]] std::optional<FileTime> cameraTime(std::string_view text, std::string_view fraction = {});

}  // namespace kelvane
