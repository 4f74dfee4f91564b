#include "OfficeLog.h"

#include "ZellBase/Log.h"

namespace ZellOfficeKit {

void LogErrorLine(const char* function, const std::string& message, const char* file, int line)
{
    using namespace Zell::Base::details;
    IOXTFormatLog(kLogError, "ZellOfficeKit", "[%s]%s[%s(%d)]", function, message.c_str(), file, line);
}

}  // namespace ZellOfficeKit
