// MeshPicture.h: a shell mesh drawn in parallel projection, a colour an element, with a depth buffer.
//
// Linear in the elements plus the pixels that they cover. No display is needed.

#ifndef MESHPICTURE_H
#define MESHPICTURE_H

#include "Colour.h"
#include "FlatGeometry.h"
#include "Outcome.h"

#include <cstdint>
#include <vector>

namespace voz::workbench
{

struct PictureSize
{
    int width = 900; // pixels of the finished picture
    int height = 600;
};

class MeshPicture
{
public:
    // Nodes in the frame of the drawing, mm, 0-based; the view comes from above at an angle (turned 30 degrees about z,
    // from 35 degrees of elevation).
    MeshPicture(VOZCatMesh const & i_mesh, std::vector<Point3> const & i_nodes, PictureSize i_size);

    void Draw(std::vector<Colour> const &
                  i_elements); // a colour per element; element sides are drawn where they are not too dense
    std::vector<std::uint8_t> Pixels() const; // red, green, blue, alpha a pixel, rows from the top
    PictureSize Size() const { return mSize; }
    Point2 Place(Point3 const & i_point) const; // of a point in the picture, pixels from the top left corner

private:
    struct Screen
    {
        double x, y, depth;
    };
    struct Corner
    {
        Screen at;
        bool sideIsEdge; // the side opposite to this corner is an element's side, not a diagonal
    };

    Screen project(Point3 const & i_point) const;
    void fill(Corner const (&i_corners)[3], Colour i_colour);
    Colour shade(Colour i_colour, Screen const & a, Screen const & b, Screen const & c) const;

    VOZCatMesh const & mMesh;
    std::vector<Screen> mNodes;
    PictureSize mSize;
    double mScale = 1.0;
    Point2 mCentre{};
    bool mSides = true;
    std::vector<float> mDepth;
    std::vector<Colour> mColour;
    std::vector<std::uint8_t> mCovered;
};

// The pixels as a PNG file's bytes. Throws OutputError if that fails.
std::string PngBytes(std::vector<std::uint8_t> const & i_rgba, PictureSize i_size);
std::string Base64(std::string_view i_bytes);

} // namespace voz::workbench

#endif
