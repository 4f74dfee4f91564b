#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace Station {

// A report without a store behind it, for measurements: rendered once for each shape, and served again with
// the numbers of the page put in. Any thread.
class SyntheticReports
{
public:
    // The answer of a page; false, with the reason in words, for a bad condition.
    bool Render(const nlohmann::json& condition, std::string& answer, std::string& reason);

private:
    struct Shape
    {
        std::int64_t page_size = 0;
        std::int64_t columns = 0;
        std::int64_t pictures = 0;
        bool operator==(const Shape& other) const
        {
            return page_size == other.page_size && columns == other.columns && pictures == other.pictures;
        }
    };
    struct Rendered
    {
        Shape shape;
        std::string head;                // titles and columns, for page 1
        std::vector<std::string> parts;  // of the rows; the number of the page goes between two of them
        std::size_t bytes = 0;           // of all parts
    };

    std::shared_ptr<const Rendered> Get(const Shape& shape);
    static std::shared_ptr<const Rendered> Draw(const Shape& shape);

    std::mutex mutex_;
    std::vector<std::shared_ptr<const Rendered>> rendered_;
};

}  // namespace Station
