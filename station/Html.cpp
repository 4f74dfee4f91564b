#include "station/Html.h"

#include "station/Report/JsonText.h"

namespace Station {

std::string ToHtml(std::string_view text)
{
    std::string html;
    for (const char letter : ToValidUtf8(text)) {
        switch (letter) {
            case '&':
                html += "&amp;";
                break;
            case '<':
                html += "&lt;";
                break;
            case '>':
                html += "&gt;";
                break;
            case '"':
                html += "&quot;";
                break;
            case '\'':
                html += "&#39;";
                break;
            default:
                html += letter;
        }
    }
    return html;
}

}  // namespace Station
