#include "MultimediaComm/VideoFormatTransfer.h"

#include "MultimediaCommHost/Protection.h"
#include "Protection/StampedPasswords.h"
#include "Video/Conversion.h"
#include "Video/VideoFailure.h"

namespace Zell::MultimediaComm {

CVideoFormatTransfer::CVideoFormatTransfer() = default;
CVideoFormatTransfer::~CVideoFormatTransfer() = default;

int CVideoFormatTransfer::Translate(std::string& target, std::string source, int /*reserved*/,
                                    std::string /*reserved_text*/)
{
    return RunVideoWork("CVideoFormatTransfer::Translate", [&target, &source] {
        const std::atomic<bool> never_stopped{false};
        const std::string password = PasswordOf(source);
        Conversion conversion;
        conversion.source = source;
        conversion.source_password = password;
        conversion.target = target;
        conversion.target_password = password;
        Convert(conversion, never_stopped);
        if (!password.empty())
            ProtectStamped(source, "");
    });
}

}  // namespace Zell::MultimediaComm
