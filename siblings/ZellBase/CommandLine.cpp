#include "ZellBase/CommandLine.h"

#include <cstddef>

namespace Zell::Base::details {
namespace {

class Splitter
{
public:
    explicit Splitter(const std::string& line) : line_(line) {}

    std::vector<std::string> Split()
    {
        SkipBlanks();
        if (!AtEnd())
            words_.push_back(TakeProgram());
        for (SkipBlanks(); !AtEnd(); SkipBlanks())
            words_.push_back(TakeWord());
        return std::move(words_);
    }

private:
    bool AtEnd() const { return at_ == line_.size(); }
    bool AtBlank() const { return line_[at_] == ' ' || line_[at_] == '\t'; }
    bool IsQuote(std::size_t at) const { return at < line_.size() && line_[at] == '"'; }

    void SkipBlanks()
    {
        while (!AtEnd() && AtBlank())
            ++at_;
    }

    std::string TakeProgram()
    {
        std::string word;
        bool in_group = false;
        for (; !AtEnd() && (in_group || !AtBlank()); ++at_) {
            if (IsQuote(at_))
                in_group = !in_group;
            else
                word += line_[at_];
        }
        return word;
    }

    std::string TakeWord()
    {
        std::string word;
        bool in_group = false;
        while (!AtEnd() && (in_group || !AtBlank())) {
            if (line_[at_] == '\\')
                TakeBackslashes(word);
            else if (IsQuote(at_))
                TakeQuote(word, in_group);
            else
                word += line_[at_++];
        }
        return word;
    }

    // Also takes the quote behind them if they make it a letter.
    void TakeBackslashes(std::string& word)
    {
        std::size_t count = 0;
        for (; !AtEnd() && line_[at_] == '\\'; ++at_)
            ++count;
        const bool before_quote = IsQuote(at_);
        word.append(before_quote ? count / 2 : count, '\\');
        if (before_quote && count % 2 == 1)
            word += line_[at_++];
    }

    void TakeQuote(std::string& word, bool& in_group)
    {
        ++at_;
        if (in_group && IsQuote(at_))
            word += line_[at_++];
        else
            in_group = !in_group;
    }

    const std::string& line_;
    std::size_t at_ = 0;
    std::vector<std::string> words_;
};

}  // namespace

std::vector<std::string> SplitCommandLine(const std::string& line)
{
    return Splitter(line).Split();
}

}  // namespace Zell::Base::details
