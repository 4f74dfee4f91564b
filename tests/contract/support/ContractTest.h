#pragma once

#include "fakes/Journal.h"
#include "fakes/Script.h"

#include <gtest/gtest.h>
#include <QTemporaryDir>

#include <string>

namespace contract {

// A fresh journal and script, and a folder of its own, which shows as "<tmp>" in every trace.
class ContractTest : public testing::Test
{
protected:
    ContractTest();
    ~ContractTest() override;

    // The test's folder, with a final "/".
    const std::string& Folder() const { return folder_; }
    // The text with every "<tmp>/" replaced by the folder.
    std::string InFolder(std::string text) const;
    // The journal since the last call, a line feed in front and behind each line: the form of a raw literal.
    static std::string Trace();
    // The numbers of the states that a run reported, as "1 4", with the error of the last.
    static std::string States(const std::string& trace);
    // The lines of a trace that begin with the words, with a line feed in front.
    static std::string Lines(const std::string& trace, const std::string& start);
    bool Exists(const std::string& path_in_folder) const;

private:
    QTemporaryDir directory_;
    std::string folder_;
};

}  // namespace contract
