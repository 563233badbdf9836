#include "GridModel.h"

#include <algorithm>
#include <array>

namespace qw
{

namespace
{
// The 256 is not among them and is passed over. Intended.
constexpr std::array<std::string_view, 3> gridNames{"m64", "m128", "m40h"};

struct ModelMark
{
    std::string_view mark;
    GridModel model;
};

// The first mark found anywhere in the path decides, serial digits included: "m64-1405" is driven as a 40h. Intended.
constexpr std::array<ModelMark, 4> modelMarks{{{"40", {8, 8, GridProtocol::FortyH}},
                                               {"64", {8, 8, GridProtocol::Series}},
                                               {"128", {8, 16, GridProtocol::Series}},
                                               {"256", {16, 16, GridProtocol::Series}}}};

bool contains(std::string_view text, std::string_view part)
{
    return text.find(part) != std::string_view::npos;
}
} // namespace

bool isGridPath(std::string_view path)
{
    return std::any_of(gridNames.begin(), gridNames.end(), [&](std::string_view name) { return contains(path, name); });
}

std::optional<GridModel> gridModelOfPath(std::string_view path)
{
    for (const auto &[mark, model] : modelMarks)
        if (contains(path, mark))
            return model;
    return std::nullopt;
}

std::uint32_t gridSerialNumber(std::string_view path)
{
    std::uint32_t number = 0;
    for (const char character : path.substr(path.size() - std::min<std::size_t>(path.size(), 4))) {
        if (character < '0' || character > '9')
            break;
        number = number * 10 + static_cast<std::uint32_t>(character - '0');
    }
    return number;
}

} // namespace qw
