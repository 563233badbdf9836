#pragma once

#include "GridProtocol.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace qw
{

/// What the path of a device says about it; the path is all that is known.
struct GridModel
{
    std::uint32_t rows = 0;
    std::uint32_t columns = 0;
    GridProtocol protocol = GridProtocol::Series;

    bool operator==(const GridModel &) const = default;
};

/// Whether a device of this path is taken for a grid.
bool isGridPath(std::string_view path);

/// None when nothing in the path tells.
std::optional<GridModel> gridModelOfPath(std::string_view path);

/// The number that the last four characters begin with; 0 without one.
std::uint32_t gridSerialNumber(std::string_view path);

} // namespace qw
