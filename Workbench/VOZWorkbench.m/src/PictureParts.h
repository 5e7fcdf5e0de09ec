// PictureParts.h: what the pictures of a report are put together from.

#ifndef PICTUREPARTS_H
#define PICTUREPARTS_H

#include "MeshPicture.h"

#include <string>
#include <vector>

namespace voz::workbench
{

constexpr PictureSize kPictureSize{900, 560};
constexpr int kLegendHeight = 60; // below the picture

// A mesh with a value an element.
struct ValuePicture
{
    VOZCatMesh const & mesh;
    std::vector<Point3> const & nodes; // in the frame of the drawing, mm
    std::string name;                  // "thinning"
    std::string unit;
    std::string label; // what is to be seen, for those who cannot see it
    std::vector<double> values;
    std::vector<int> hidden; // per element: 1 is drawn grey and counts for nothing; empty: none
    int decimals = 1;
};

// The mesh in the colours of its values, with its colour bar and marked extremes, as an svg element.
std::string DrawValues(ValuePicture const & i_picture);

std::string PictureFrame(MeshPicture const & i_picture, std::string const & i_label, std::string const & i_over);
std::string PictureText(double i_x, double i_y, char const * i_anchor, std::string const & i_content);

} // namespace voz::workbench

#endif
