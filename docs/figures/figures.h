#pragma once

#include "clip/drawing.h"

#include <array>
#include <string_view>

// The pictures of the manual. Every number and every place in them comes from the library, so that no picture can say
// something else than the code does.

namespace figures
{

/// A point through a matrix, the rows as the images of the axes, and the sequence of a product.
clip::Drawing DrawRowVectors();

/// The six orders of Euler angles, turn by turn.
clip::Drawing DrawRotationOrders();

/// The spaces of an edit, and its pivots.
clip::Drawing DrawEditSpaces();

/// A mirrored matrix taken apart, with and without the bits that remember its negative axes.
clip::Drawing DrawSignBits();

/// The numbers of a box's corners, edges and faces.
clip::Drawing DrawBoxTables();

/// A child under an uneven scale, composed by component and by matrix.
clip::Drawing DrawComposition();

struct Figure
{
    std::string_view fileName;
    clip::Drawing (*draw)();
};

inline constexpr std::array<Figure, 6> k_Figures = {{{"row_vectors.svg", DrawRowVectors},
                                                     {"rotation_orders.svg", DrawRotationOrders},
                                                     {"edit_spaces.svg", DrawEditSpaces},
                                                     {"sign_bits.svg", DrawSignBits},
                                                     {"box_tables.svg", DrawBoxTables},
                                                     {"composition.svg", DrawComposition}}};

} // namespace figures
