// SymmetryCheck.cpp: a symmetric part must have a symmetric blank.
//
// The part is paired with its mirror image, node by node, about the middle of its bounding box across local x and y. In
// a symmetric blank both nodes of a pair are as far from the blank's middle; that holds wherever the blank lies and
// however it is turned.

#include "FieldPictures.h"
#include "OutputFile.h"
#include "PointGrid.h"
#include "RunChecks.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace voz::workbench
{

namespace
{
constexpr double kPairTolerance = 1e-5;  // of the part's size
constexpr double kBlankTolerance = 0.01; // of the blank's size: a mesh that is no mirror image itself costs some

bool PrefersASide(Job const & i_job)
{
    return !i_job.holders.empty() || !i_job.beads.empty() || !i_job.pads.empty() || !i_job.constraints.empty() ||
           i_job.binder || i_job.autoStrain || i_job.materials.size() > 1;
}

using Rows = std::unique_ptr<double[][3]>;

// For each node, 0-based, its image about the middle of the bounding box across one local axis; empty where one has
// none.
std::vector<std::size_t> Images(std::vector<Point3> const & i_nodes, std::size_t i_axis)
{
    Point3 low = i_nodes.front();
    Point3 high = low;
    for (Point3 const & node : i_nodes)
        for (std::size_t c = 0; c < 3; ++c)
        {
            low[c] = std::min(low[c], node[c]);
            high[c] = std::max(high[c], node[c]);
        }
    double const size = std::hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]);
    std::size_t const count = i_nodes.size();
    Rows const rows = std::make_unique<double[][3]>(2 * count + 1); // the nodes, then their images
    for (std::size_t n = 0; n < count; ++n)
    {
        std::ranges::copy(i_nodes[n], rows[n + 1]);
        std::ranges::copy(i_nodes[n], rows[count + n + 1]);
        rows[count + n + 1][i_axis] = low[i_axis] + high[i_axis] - i_nodes[n][i_axis];
    }
    PointGrid grid(rows.get(), static_cast<int>(2 * count), kPairTolerance * size);
    for (std::size_t n = 1; n <= count; ++n)
        grid.Add(static_cast<int>(n));
    std::vector<std::size_t> images;
    for (std::size_t n = 1; n <= count; ++n)
    {
        int const image = grid.FindNear(static_cast<int>(count + n));
        if (image == 0)
            return {};
        images.push_back(static_cast<std::size_t>(image) - 1);
    }
    return images;
}

// The largest difference of a pair's distances from the blank's middle.
double Skewness(std::vector<NodeOutcome> const & i_nodes, std::vector<std::size_t> const & i_images)
{
    double x = 0.0;
    double y = 0.0;
    for (NodeOutcome const & node : i_nodes)
    {
        x += node.flat[0] / static_cast<double>(i_nodes.size());
        y += node.flat[1] / static_cast<double>(i_nodes.size());
    }
    double largest = 0.0;
    for (std::size_t n = 0; n < i_nodes.size(); ++n)
    {
        Point3 const & a = i_nodes[n].flat;
        Point3 const & b = i_nodes[i_images[n]].flat;
        largest = std::max(largest, std::abs(std::hypot(a[0] - x, a[1] - y) - std::hypot(b[0] - x, b[1] - y)));
    }
    return largest;
}
} // namespace

std::optional<OutcomeCheck> SymmetryCheck(Job const & i_job, Outcome const & i_outcome)
{
    if (PrefersASide(i_job) || i_outcome.nodes.empty())
        return std::nullopt;
    std::vector<Point3> const nodes = NodesInFrame(i_outcome);
    std::optional<double> largest;
    for (std::size_t const axis : {0U, 1U})
        if (std::vector<std::size_t> const images = Images(nodes, axis); !images.empty())
            largest = std::max(largest.value_or(0.0), Skewness(i_outcome.nodes, images));
    if (!largest)
        return std::nullopt;
    double const limit = kBlankTolerance * std::max(i_outcome.summary.blankWidth, i_outcome.summary.blankHeight);
    return OutcomeCheck{"blank of a symmetric part: difference of its sides", Fixed(*largest, 3) + " mm",
                        "at most " + Fixed(limit, 3) + " mm", *largest <= limit, true};
}

} // namespace voz::workbench
