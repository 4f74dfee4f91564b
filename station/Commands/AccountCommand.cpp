#include "station/Commands/Arguments.h"
#include "station/Commands/Commands.h"
#include "station/Data/Accounts.h"
#include "station/Data/Store.h"
#include "station/Platform/Platform.h"

#include <fstream>
#include <iostream>
#include <system_error>

namespace Station {

int AccountCommand(const CommandLine& line)
{
    const Arguments arguments(line, {"--data"}, {});
    if (arguments.Words().size() != 2 || arguments.Words()[0] != "add" || arguments.Words()[1].empty())
        throw UsageError("account is used as: fetchyard-station account add NAME --data DIR");
    const std::string& name = arguments.Words()[1];
    if (name.find(':') != std::string::npos)
        throw UsageError("a user name has no colon");
    const std::filesystem::path data = arguments.Path("--data");
    const std::string password = Platform::ReadSecretLine("Password of " + name + ": ");
    if (password.empty())
        throw UsageError("the password, read from the standard input, is empty");
    SetAccount(*OpenForWriting(data), name, password);
    std::cout << "account " << name << " is set" << std::endl;
    return ExitGood;
}

int TrustCommand(const CommandLine& line)
{
    const Arguments arguments(line, {"--data"}, {});
    if (arguments.Words().size() != 1)
        throw UsageError("trust is used as: fetchyard-station trust KEYFILE --data DIR");
    const std::string& key_file = arguments.Words()[0];
    ShareCipherKey(std::filesystem::u8path(key_file), arguments.Path("--data"));
    std::cout << "the station shares the key of " << key_file << std::endl;
    return ExitGood;
}

void ShareCipherKey(const std::filesystem::path& key_file, const std::filesystem::path& data)
{
    std::ifstream source(key_file);
    std::string digits;
    source >> digits;
    if (!IsCipherKey(digits))
        throw StoreError(key_file.u8string() + " holds no key of 64 hex digits.");
    OpenForWriting(data);
    const std::filesystem::path target = CipherKeyFile(data);
    std::filesystem::path temporary = target;
    temporary += ".new";
    std::error_code error;
    std::filesystem::remove(temporary, error);
    // The file is private before the key is in it.
    std::ofstream out(temporary, std::ios::binary);
    const bool is_private = Platform::RestrictToOwner(temporary);
    if (is_private)
        out << digits << '\n';
    out.close();
    if (is_private && out)
        std::filesystem::rename(temporary, target, error);
    if (!is_private || !out || error) {
        std::error_code ignored;
        std::filesystem::remove(temporary, ignored);
        throw StoreError("The key can't be written to " + target.u8string() + ".");
    }
}

}  // namespace Station
