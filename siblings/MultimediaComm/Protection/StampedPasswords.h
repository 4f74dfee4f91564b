#pragma once

#include <string>

// Which videos are to be protected once they are stamped. Any thread.
namespace Zell::MultimediaComm {

// The password of the file; empty if it has none. Beside ProtectStamped, which remembers.
std::string PasswordOf(const std::string& path);

}  // namespace Zell::MultimediaComm
