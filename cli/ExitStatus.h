// The program's exit statuses.

#pragma once

#include <string_view>

namespace tpcli {

enum class Status : int {
   done = 0,
   failed = 1,
   usage = 2,
   alarm = 4,
   interrupted = 130,
};

struct StatusRow {
   Status status;
   std::string_view meaning;
};

// All of them: what help and manual page say.
inline constexpr StatusRow statusRows[] = {
   { Status::done, "done" },
   { Status::failed, "something could not be read or written, or a check found something" },
   { Status::usage, "the command line was wrong" },
   { Status::alarm, "status: a policy's installation failed" },
   { Status::interrupted, "interrupted" },
};

} // namespace tpcli
