#include "KeyCommands.h"

#include "RequestCheck.h"
#include "RunCommand.h"
#include "ZellTaskKit/ClientServices.h"
#include "ZellTaskKitHost/SensitiveKey.h"

#include <cstdio>
#include <iostream>

namespace FetchyardClient {

namespace {

bool UseSettingsOrSay(const HostOptions& options)
{
    std::string reason;
    if (UseSettings(options, reason))
        return true;
    std::fprintf(stderr, "%s\n", reason.c_str());
    return false;
}

}  // namespace

int CipherCommand(const HostOptions& options)
{
    if (!UseSettingsOrSay(options))
        return kSomethingFailed;
    std::string password;
    std::getline(std::cin, password);
    std::string ciphered;
    if (!ZellTaskKit::PrivateEncrypt::AESEncryptForSensitiveInfor(ciphered, password)) {
        std::fprintf(stderr, "the key %s can't be used\n", ZellTaskKit::SensitiveKeyPath().c_str());
        return kSomethingFailed;
    }
    std::printf("%s\n", ciphered.c_str());
    return kAllWell;
}

int ShareKeyCommand(const HostOptions& options, const std::string& target)
{
    if (!UseSettingsOrSay(options))
        return kSomethingFailed;
    std::string reason;
    if (ZellTaskKit::ShareSensitiveKey(target, reason))
        return kAllWell;
    std::fprintf(stderr, "%s\n", reason.c_str());
    return kSomethingFailed;
}

int CheckCommand(const std::vector<std::string>& paths)
{
    std::vector<RequestSource> requests;
    if (!ReadRequests(paths, requests))
        return kBadInput;
    bool good = true;
    for (const RequestSource& source : requests) {
        nlohmann::json request;
        std::vector<Violation> violations;
        if (ParseRequest(source.text, request, violations))
            violations = CheckRequest(request);
        PrintViolations(stdout, source.label, violations);
        if (violations.empty())
            std::printf("%s: fits\n", source.label.c_str());
        good = good && violations.empty();
    }
    return good ? kAllWell : kBadInput;
}

}  // namespace FetchyardClient
