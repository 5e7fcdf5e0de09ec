// ToolMeshesRegions.cpp: which of a part's elements are flange, shoulder and punch.
//
// Edges at which the sheet is bent sharply part the sheet into lands, walls, and strips of fillets. A land that reaches
// the rim and from which the part goes up all around is flange; beside it every strip, wall and top has something
// lower. From the flange to the walls the part turns ever steeper: the shoulder.

#include "ToolSurface.h"

#include <numbers>
#include <utility>

namespace voz::workbench
{

namespace
{
constexpr double kRadian = std::numbers::pi / 180.0;
constexpr double kSteepestFlange = 45.0 * kRadian; // of its mean normal
constexpr double kLeastBend = 0.5 * kRadian;       // between two elements: less is no bend, however small they are
constexpr double kUpShare = 0.8;                   // of the sides of a flange beyond which the part goes up
constexpr double kStillTurning = 1.0 * kRadian;    // less than this from element to element is a straight wall

double SlopeOf(Point3 const & i_normal) // to the level
{
    return std::atan2(std::hypot(i_normal[0], i_normal[1]), i_normal[2]);
}

std::vector<Point3> NormalsOf(Surface const & i_surface)
{
    std::vector<Point3> normals;
    for (std::array<int, 4> const & row : i_surface.elements)
        normals.push_back(Unit(i_surface.AreaVector(row)));
    return normals;
}

Point3 MiddleOf(Surface const & i_surface, int i_element)
{
    std::array<int, 4> const & row = i_surface.elements[static_cast<std::size_t>(i_element)];
    int const corners = Surface::Corners(row);
    Point3 middle{};
    for (int k = 0; k < corners; ++k)
        middle = Sum(middle, i_surface.At(row[static_cast<std::size_t>(k)]), 1.0 / corners);
    return middle;
}

// A connected region between bends, and whether it is flange.
class Land
{
public:
    Land(Surface const & i_surface, ElementNeighbours const & i_neighbours, double i_sharpest)
        : mSurface(i_surface), mNeighbours(i_neighbours), mNormals(NormalsOf(i_surface)), mSharpest(i_sharpest),
          mIsSeen(i_surface.elements.size(), 0), mIsRim(i_surface.elements.size(), 0)
    {
        for (RimEdge const & edge : FreeEdgesOf(i_surface))
            mIsRim[static_cast<std::size_t>(edge.element)] = 1;
    }

    std::vector<int> GrowFrom(int i_first, bool & o_isFlange)
    {
        std::vector<int> land{i_first};
        mIsSeen[static_cast<std::size_t>(i_first)] = 1;
        int up = 0;
        int down = 0;
        bool reachesRim = false;
        Point3 normal{};
        for (std::size_t i = 0; i < land.size(); ++i)
        {
            auto const e = static_cast<std::size_t>(land[i]);
            reachesRim = reachesRim || mIsRim[e] != 0;
            normal = Sum(normal, mSurface.AreaVector(mSurface.elements[e]));
            mNeighbours.ForEach(land[i],
                                [&](int other)
                                {
                                    if (IsBent(land[i], other))
                                        ++(Height(other) > Height(land[i]) ? up : down);
                                    else if (std::exchange(mIsSeen[static_cast<std::size_t>(other)], char{1}) == 0)
                                        land.push_back(other);
                                });
        }
        o_isFlange = reachesRim && up > 0 && up >= kUpShare * (up + down) && SlopeOf(normal) <= kSteepestFlange;
        return land;
    }
    bool IsSeen(int i_element) const { return mIsSeen[static_cast<std::size_t>(i_element)] != 0; }

private:
    double Height(int i_element) const { return MiddleOf(mSurface, i_element)[2]; }
    // From the middle of an element to its side towards a neighbour: half its width, so that the finer of two elements
    // tells how sharp the bend is.
    double FromSide(int i_element, int i_other) const
    {
        std::array<int, 4> const & row = mSurface.elements[static_cast<std::size_t>(i_element)];
        std::array<int, 4> const & other = mSurface.elements[static_cast<std::size_t>(i_other)];
        std::array<Point3, 2> ends{};
        std::size_t found = 0;
        for (int k = 0; k < Surface::Corners(row) && found < 2; ++k)
            if (std::ranges::find(other, row[static_cast<std::size_t>(k)]) != other.end())
                ends[found++] = mSurface.At(row[static_cast<std::size_t>(k)]);
        Point3 const along = Unit(Difference(ends[1], ends[0]));
        return Length(Cross(along, Difference(MiddleOf(mSurface, i_element), ends[0])));
    }
    bool IsBent(int i_element, int i_other) const
    {
        Point3 const & a = mNormals[static_cast<std::size_t>(i_element)];
        Point3 const & b = mNormals[static_cast<std::size_t>(i_other)];
        double const angle = std::atan2(Length(Cross(a, b)), Dot(a, b));
        double const apart = 2.0 * std::min(FromSide(i_element, i_other), FromSide(i_other, i_element));
        return angle > kLeastBend && angle * mSharpest > apart;
    }

    Surface const & mSurface;
    ElementNeighbours const & mNeighbours;
    std::vector<Point3> mNormals;
    double mSharpest;
    std::vector<char> mIsSeen;
    std::vector<char> mIsRim;
};
} // namespace

std::vector<char> FlangeOf(Surface const & i_surface, double i_sharpest)
{
    ElementNeighbours const neighbours(i_surface);
    Land land(i_surface, neighbours, i_sharpest);
    std::vector<char> isFlange(i_surface.elements.size(), 0);
    for (int first = 0; first < static_cast<int>(isFlange.size()); ++first)
    {
        if (land.IsSeen(first))
            continue;
        bool isOne = false;
        for (int const e : land.GrowFrom(first, isOne))
            isFlange[static_cast<std::size_t>(e)] = isOne ? 1 : 0;
    }
    return isFlange;
}

std::vector<char> ShoulderOf(Surface const & i_surface, std::vector<char> const & i_isFlange)
{
    ElementNeighbours const neighbours(i_surface);
    std::vector<Point3> const normals = NormalsOf(i_surface);
    std::vector<char> isShoulder(i_surface.elements.size(), 0);
    std::vector<int> queue;
    for (std::size_t e = 0; e < i_isFlange.size(); ++e)
        if (i_isFlange[e] != 0)
            queue.push_back(static_cast<int>(e));
    for (std::size_t i = 0; i < queue.size(); ++i)
    {
        double const slope = SlopeOf(normals[static_cast<std::size_t>(queue[i])]);
        neighbours.ForEach(queue[i],
                           [&](int other)
                           {
                               auto const o = static_cast<std::size_t>(other);
                               if (i_isFlange[o] != 0 || isShoulder[o] != 0 ||
                                   SlopeOf(normals[o]) < slope + kStillTurning)
                                   return;
                               isShoulder[o] = 1;
                               queue.push_back(other);
                           });
    }
    return isShoulder;
}

} // namespace voz::workbench
