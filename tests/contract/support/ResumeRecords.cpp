#include "support/ResumeRecords.h"

#include "ZellBase/Util.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace contract {

std::string Decoded(const std::string& base64)
{
    std::string text;
    EXPECT_TRUE(Zell::Base::Encrypt::Base64Decode(text, base64));
    return text;
}

std::string Encoded(const std::string& text)
{
    std::string base64;
    Zell::Base::Encrypt::Base64Encode(base64, text);
    return base64;
}

std::string Golden(const std::string& name)
{
    std::ifstream file(std::string(GOLDEN_FOLDER) + "/" + name, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text;
}

}  // namespace contract
