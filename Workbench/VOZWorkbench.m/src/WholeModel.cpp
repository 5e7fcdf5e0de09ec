// WholeModel.cpp: the whole of a part that is modelled in part, and of the job on it.

#include "WholeModel.h"

#include "PointMath.h"

#include <numeric>

namespace voz::workbench
{

namespace
{
constexpr double kOnPlane = 1e-5; // of the part's size: a node so near to a plane of symmetry lies on it

// The row's corners in the sense that a mirror leaves right.
void CopyMirrored(int const (&i_row)[4], std::vector<int> const & i_image, int (&o_row)[4])
{
    bool const isTriangle = i_row[0] == i_row[3];
    int const turned[4] = {0, isTriangle ? 2 : 3, isTriangle ? 1 : 2, isTriangle ? 0 : 1};
    for (int k = 0; k < 4; ++k)
        o_row[k] = i_image[static_cast<std::size_t>(i_row[turned[k]])];
}

// Adds the image in the plane through the frame's origin with the normal of one axis.
WholePart Doubled(WholePart const & i_half, VOZCatAxis const & i_frame, int i_axis)
{
    VOZCatMesh const & half = i_half.mesh;
    Point3 const normal = AxisOf(i_frame, i_axis);
    Point3 const origin{i_frame.origin(0), i_frame.origin(1), i_frame.origin(2)};
    double const tolerance = kOnPlane * BoxOf(half).Diagonal();
    WholePart whole;
    whole.nodeOf = i_half.nodeOf;
    whole.mirrored = i_half.mirrored;
    std::vector<int> image(static_cast<std::size_t>(half.numNode()) + 1, 0);
    std::vector<Point3> added;
    for (int n = 1; n <= half.numNode(); ++n)
    {
        auto const i = static_cast<std::size_t>(n);
        Point3 const p = NodeOf(half, n);
        double const distance = Dot(p, normal) - Dot(origin, normal);
        image[i] = n;
        if (std::abs(distance) <= tolerance)
            continue;
        added.push_back(Sum(p, normal, -2.0 * distance));
        image[i] = half.numNode() + static_cast<int>(added.size());
        whole.nodeOf.push_back(i_half.nodeOf[i - 1]);
        whole.mirrored.push_back(i_half.mirrored[i - 1] ^ (1U << i_axis));
    }
    whole.mesh = VOZCatMesh(half.numNode() + static_cast<int>(added.size()), 2 * half.numElem());
    double(*const nodes)[3] = whole.mesh.GetNodeData();
    for (int n = 1; n <= half.numNode(); ++n)
        std::copy_n(half.GetNodeData()[n], 3, nodes[n]);
    for (std::size_t k = 0; k < added.size(); ++k)
        std::ranges::copy(added[k], nodes[static_cast<std::size_t>(half.numNode()) + 1 + k]);
    int(*const elements)[4] = whole.mesh.GetElemData();
    for (int e = 1; e <= half.numElem(); ++e)
    {
        for (int k = 0; k < 4; ++k)
            elements[e][k] = half.ElementValue(e, k);
        CopyMirrored(elements[e], image, elements[half.numElem() + e]);
    }
    whole.elementOf = i_half.elementOf;
    whole.elementOf.insert(whole.elementOf.end(), i_half.elementOf.begin(), i_half.elementOf.end());
    return whole;
}

// --- The job ---------------------------------------------------------------------------------------------------------

// Ids of the whole: those of the file, then new ones for the images.
std::vector<int> WholeIds(std::vector<int> const & i_ids, std::size_t i_count)
{
    std::vector<int> ids = i_ids;
    int next = 1;
    for (int const id : i_ids)
        next = std::max(next, id + 1);
    while (ids.size() < i_count)
        ids.push_back(next++);
    return ids;
}

// For each of the model's entries (1-based) the positions that stand for it in the whole, ascending.
class ImageTable
{
public:
    ImageTable(std::vector<int> const & i_modelOf, std::size_t i_modelCount)
        : mBegin(i_modelCount + 2, 0), mEntries(i_modelOf.size())
    {
        for (int const m : i_modelOf)
            ++mBegin[static_cast<std::size_t>(m) + 2];
        std::partial_sum(mBegin.begin(), mBegin.end(), mBegin.begin());
        std::vector<std::size_t> at(mBegin.begin() + 1, mBegin.end());
        for (std::size_t i = 0; i < i_modelOf.size(); ++i)
            mEntries[at[static_cast<std::size_t>(i_modelOf[i])]++] = static_cast<int>(i) + 1;
    }
    std::vector<int> Of(std::vector<int> const & i_positions) const
    {
        std::vector<int> images;
        for (int const p : i_positions)
            for (std::size_t i = mBegin[static_cast<std::size_t>(p)]; i < mBegin[static_cast<std::size_t>(p) + 1]; ++i)
                images.push_back(mEntries[i]);
        std::ranges::sort(images);
        return images;
    }

private:
    std::vector<std::size_t> mBegin; // per position; entry 0 unused
    std::vector<int> mEntries;
};

// Makes the whole of a job, table by table.
class JobDoubler
{
public:
    JobDoubler(Job const & i_job, JobModel const & i_model, Tipping const & i_tipping, WholeJob & io_whole)
        : mJob(i_job), mModel(i_model), mFrame(i_tipping.frame), mSymmetry(i_tipping.symmetry), mWhole(io_whole),
          mNodes(io_whole.part.nodeOf, static_cast<std::size_t>(i_model.mesh.mesh.numNode()) + 1),
          mElements(io_whole.part.elementOf, static_cast<std::size_t>(i_model.mesh.mesh.numElem()) + 1),
          mMasks(i_tipping.symmetry.quarterSymmetry() ? std::vector<unsigned>{1U, 2U, 3U}
                 : i_tipping.symmetry.yzSymmetry()    ? std::vector<unsigned>{1U}
                                                      : std::vector<unsigned>{2U})
    {
    }

    void Run()
    {
        DoubleModel();
        mWhole.job.planes.clear();
        for (JobEdgeHolder & holder : mWhole.job.holders)
        {
            holder.force *= static_cast<double>(mMasks.size() + 1);
            SelectNodes(holder.edges);
        }
        for (JobPad & pad : mWhole.job.pads)
            SelectElements(pad.elements);
        DoubleBeads();
        DoubleConstraints();
        if (std::optional<JobSpringback> & springback = mWhole.job.springback)
        {
            for (JobSelection & held : springback->constraints)
                SelectNodes(held);
            if (springback->trimmed)
                SelectElements(*springback->trimmed);
        }
    }

private:
    void DoubleModel() const
    {
        if (std::optional<MeshModel> & binder = mWhole.model.binder)
        {
            WholePart const part = MakeWhole(binder->mesh, mFrame, mSymmetry);
            binder->mesh = part.mesh;
            binder->nodeIds = WholeIds(binder->nodeIds, part.nodeOf.size());
            binder->elementIds = WholeIds(binder->elementIds, part.elementOf.size());
        }
        MeshModel & mesh = mWhole.model.mesh;
        mesh.mesh = mWhole.part.mesh;
        mesh.nodeIds = WholeIds(mesh.nodeIds, mWhole.part.nodeOf.size());
        mesh.elementIds = WholeIds(mesh.elementIds, mWhole.part.elementOf.size());
        for (ElementSet & set : mesh.sets)
            set.elements = mElements.Of(set.elements);
        mWhole.model.report = CheckMesh(mesh);
    }

    void SelectNodes(JobSelection & io_selection) const
    {
        Select(io_selection, mNodes.Of(NodesOf(io_selection, mJob, mModel)), mWhole.model.mesh.nodeIds);
    }
    void SelectElements(JobSelection & io_selection) const
    {
        Select(io_selection, mElements.Of(ElementsOf(io_selection, mJob, mModel)), mWhole.model.mesh.elementIds);
    }
    static void Select(JobSelection & io_selection, std::vector<int> const & i_positions,
                       std::vector<int> const & i_ids)
    {
        io_selection.set.clear();
        io_selection.box.reset();
        io_selection.ids.clear();
        for (int const p : i_positions)
            io_selection.ids.push_back(i_ids[static_cast<std::size_t>(p) - 1]);
    }

    Point3 MirroredPoint(Point3 const & i_point, unsigned i_mask) const
    {
        Point3 const origin{mFrame.origin(0), mFrame.origin(1), mFrame.origin(2)};
        return Sum(origin, ImageOf(Difference(i_point, origin), i_mask, mFrame));
    }

    void DoubleBeads() const
    {
        for (unsigned const mask : mMasks)
            for (JobBead bead : mJob.beads)
            {
                for (Point3 & point : bead.points)
                    point = MirroredPoint(point, mask);
                bead.where += ", its image";
                mWhole.job.beads.push_back(std::move(bead));
            }
    }

    // A displacement along local x or y turns its sign with the plane across it, so that images are constraints of
    // their own; nodes on a plane keep to it.
    void DoubleConstraints() const
    {
        mWhole.job.constraints.clear();
        for (JobConstraint const & constraint : mJob.constraints)
        {
            std::vector<int> const images = mNodes.Of(NodesOf(constraint.nodes, mJob, mModel));
            for (unsigned mask = 0; mask < 4; ++mask)
            {
                JobConstraint image = constraint;
                std::vector<int> nodes;
                for (int const n : images)
                    if (mWhole.part.mirrored[static_cast<std::size_t>(n) - 1] == mask)
                        nodes.push_back(n);
                if (nodes.empty())
                    continue;
                if (image.x && (mask & 1U) != 0)
                    *image.x = -*image.x;
                if (image.y && (mask & 2U) != 0)
                    *image.y = -*image.y;
                Select(image.nodes, nodes, mWhole.model.mesh.nodeIds);
                mWhole.job.constraints.push_back(std::move(image));
            }
        }
    }

    Job const & mJob;
    JobModel const & mModel;
    VOZCatAxis const & mFrame;
    Symmetry const & mSymmetry;
    WholeJob & mWhole;
    ImageTable mNodes;
    ImageTable mElements;
    std::vector<unsigned> mMasks; // of the images
};
} // namespace

WholePart MakeWhole(VOZCatMesh const & i_model, VOZCatAxis const & i_frame, Symmetry const & i_symmetry)
{
    WholePart part;
    part.mesh = i_model;
    for (int n = 0; n < i_model.numNode(); ++n)
        part.nodeOf.push_back(n);
    for (int e = 0; e < i_model.numElem(); ++e)
        part.elementOf.push_back(e);
    part.mirrored.assign(part.nodeOf.size(), 0U);
    if (i_symmetry.yzSymmetry())
        part = Doubled(part, i_frame, 0);
    if (i_symmetry.xzSymmetry())
        part = Doubled(part, i_frame, 1);
    return part;
}

Point3 ImageOf(Point3 i_vector, unsigned i_mirrored, VOZCatAxis const & i_frame)
{
    for (int axis = 0; axis < 2; ++axis)
        if ((i_mirrored >> axis & 1U) != 0)
        {
            Point3 const normal = AxisOf(i_frame, axis);
            i_vector = Sum(i_vector, normal, -2.0 * Dot(i_vector, normal));
        }
    return i_vector;
}

WholeJob MakeWholeJob(Job const & i_job, JobModel const & i_model, Tipping const & i_tipping)
{
    WholeJob whole{i_job, i_model, i_tipping, MakeWhole(i_model.mesh.mesh, i_tipping.frame, i_tipping.symmetry), {}};
    if (i_tipping.symmetry.noSymmetry())
        return whole;
    JobDoubler(i_job, i_model, i_tipping, whole).Run();
    whole.tipping.symmetry = Symmetry();
    whole.tipping.undercut.clear();
    for (int const e : whole.part.elementOf)
        whole.tipping.undercut.push_back(i_tipping.undercut[static_cast<std::size_t>(e)]);
    whole.tipping.undercutElements =
        static_cast<int>(std::ranges::count_if(whole.tipping.undercut, [](int is) { return is != 0; }));
    whole.remarks.push_back(std::string("the ") + (i_tipping.symmetry.quarterSymmetry() ? "quarter" : "half") +
                            " model was mirrored to the whole part: " + std::to_string(whole.part.mesh.numNode()) +
                            " nodes, " + std::to_string(whole.part.mesh.numElem()) + " elements");
    return whole;
}

} // namespace voz::workbench
