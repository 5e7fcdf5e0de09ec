// MeshBuilder.cpp: ids become positions.

#include "MeshBuilder.h"

#include "OutputFile.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace voz::workbench
{
namespace
{
constexpr double kLargestCoordinate = 1e9; // mm: squares and products of such lengths stay far inside of a double
constexpr double kSmallBox = 1.0;          // mm; a part beyond these is likely in another unit
constexpr double kLargeBox = 10000.0;
} // namespace

void PlaceTable::Enter(std::string const & i_file)
{
    auto const known = std::find(mFiles.begin(), mFiles.end(), i_file);
    mFile = static_cast<std::size_t>(known - mFiles.begin());
    if (known == mFiles.end())
        mFiles.push_back(i_file);
    mIsFresh = true;
}

PlaceTable::Mark PlaceTable::At(int i_line)
{
    if (mIsFresh)
    {
        mRuns.push_back({mLast + 1, i_line, mFile});
        mIsFresh = false;
    }
    Run const & run = mRuns.back();
    mLast = run.first + static_cast<Mark>(i_line - run.line);
    return mLast;
}

std::pair<std::string, int> PlaceTable::Find(Mark i_mark) const
{
    auto const after = std::upper_bound(mRuns.begin(), mRuns.end(), i_mark,
                                        [](Mark mark, Run const & run) { return mark < run.first; });
    if (after == mRuns.begin())
        return {mFiles.empty() ? std::string() : mFiles.front(), 0};
    Run const & run = *(after - 1);
    return {mFiles[run.file], run.line + static_cast<int>(i_mark - run.first)};
}

template <class IdAt>
IdIndex::IdIndex(int i_count, IdAt i_idAt, std::vector<std::pair<int, int>> & o_repeated)
{
    if (i_count == 0)
        return;
    int high = mLow = i_idAt(0);
    for (int i = 1; i < i_count; ++i)
    {
        mLow = std::min(mLow, i_idAt(i));
        high = std::max(high, i_idAt(i));
    }
    long long const range = static_cast<long long>(high) - mLow + 1;
    if (range <= 4LL * i_count + 1024)
    {
        mTable.assign(static_cast<std::size_t>(range), -1);
        for (int i = 0; i < i_count; ++i)
        {
            int & entry = mTable[static_cast<std::size_t>(i_idAt(i) - mLow)];
            if (entry >= 0)
                o_repeated.emplace_back(entry, i);
            else
                entry = i;
        }
        return;
    }
    mSorted.reserve(static_cast<std::size_t>(i_count));
    for (int i = 0; i < i_count; ++i)
        mSorted.emplace_back(i_idAt(i), i);
    std::sort(mSorted.begin(), mSorted.end());
    int first = 0;
    for (std::size_t k = 0; k < mSorted.size(); ++k)
        if (k > 0 && mSorted[k].first == mSorted[k - 1].first)
            o_repeated.emplace_back(first, mSorted[k].second);
        else
            first = mSorted[k].second;
    std::sort(o_repeated.begin(), o_repeated.end(), [](auto const & a, auto const & b) { return a.second < b.second; });
}

int IdIndex::Find(int i_id) const
{
    if (!mTable.empty())
    {
        long long const k = static_cast<long long>(i_id) - mLow;
        return k >= 0 && k < static_cast<long long>(mTable.size()) ? mTable[static_cast<std::size_t>(k)] : -1;
    }
    auto const found = std::lower_bound(mSorted.begin(), mSorted.end(), std::pair(i_id, 0));
    return found != mSorted.end() && found->first == i_id ? found->second : -1;
}

MeshBuilder::MeshBuilder(std::string i_file, MeshFormat i_format, ReadOptions const & i_options, Words i_words)
    : mFile(std::move(i_file)), mFormat(i_format), mWords(i_words), mUnit(i_options.unitLength),
      mIsUnitGiven(i_options.unitLength != 0.0)
{
    if (!mIsUnitGiven)
        mUnit = 1.0;
    if (!(mUnit > 0.0) || !std::isfinite(mUnit))
        throw InputError(mFile, 0, 0,
                         "the length unit of the file is told as " + Shortest(mUnit) + " mm, expected more than 0");
}

void MeshBuilder::fail(PlaceTable::Mark mark, int column, std::string const & message) const
{
    auto const [file, line] = mPlaces.Find(mark);
    throw InputError(file.empty() ? mFile : file, line, column, message);
}

void MeshBuilder::AddNode(int i_id, std::array<double, 3> const & i_place, PlaceTable::Mark i_mark)
{
    Node node{{}, i_id, i_mark};
    for (std::size_t c = 0; c < 3; ++c)
    {
        node.place[c] = i_place[c] * mUnit + 0.0; // + 0.0: no negative zero
        if (!(std::abs(node.place[c]) <= kLargestCoordinate))
            fail(i_mark, 0,
                 std::string(mWords.node) + " " + std::to_string(i_id) + " has a coordinate of " +
                     Shortest(node.place[c]) + " mm, expected at most 1e9 mm");
    }
    if (mNodes.size() >= static_cast<std::size_t>(std::numeric_limits<int>::max() / 4))
        fail(i_mark, 0, "too many nodes, expected fewer than 536870911");
    mNodes.push_back(node);
}

void MeshBuilder::AddElement(ElementRecord const & i_element)
{
    if (mElements.size() >= static_cast<std::size_t>(std::numeric_limits<int>::max() / 4))
        fail(i_element.mark, 0, "too many elements, expected fewer than 536870911");
    mElements.push_back(i_element);
}

ElementSet & MeshBuilder::Set(int i_id)
{
    ElementSet & set = mSets[i_id];
    set.id = i_id;
    return set;
}

int MeshBuilder::SetOfName(std::string const & i_name)
{
    auto const [entry, isNew] = mSetOfName.try_emplace(i_name, static_cast<int>(mSetOfName.size()) + 1);
    if (isNew)
        Set(entry->second).name = i_name;
    return entry->second;
}

void MeshBuilder::Skip(std::string const & i_name, long i_count)
{
    mSkipped[i_name] += i_count;
}

// Later nodes of the same id must be the same; they go, and positionOf tells where each entry went.
void MeshBuilder::dropRepeatedNodes(std::vector<std::pair<int, int>> const & repeated, std::vector<int> & positionOf)
{
    if (repeated.empty())
        return;
    for (auto const & [first, later] : repeated)
    {
        Node const & a = mNodes[static_cast<std::size_t>(first)];
        Node const & b = mNodes[static_cast<std::size_t>(later)];
        if (a.place != b.place)
            fail(b.mark, 0,
                 std::string(mWords.node) + " " + std::to_string(b.id) + " stands at another place already in line " +
                     std::to_string(mPlaces.Find(a.mark).second) + " of " + mPlaces.Find(a.mark).first +
                     ", expected each id once");
    }
    positionOf.resize(mNodes.size());
    std::size_t kept = 0;
    auto next = repeated.begin();
    for (std::size_t i = 0; i < mNodes.size(); ++i)
    {
        bool const isRepeat = next != repeated.end() && static_cast<std::size_t>(next->second) == i;
        if (isRepeat)
        {
            positionOf[i] = positionOf[static_cast<std::size_t>(next->first)];
            ++next;
            continue;
        }
        mNodes[kept++] = mNodes[i];
        positionOf[i] = static_cast<int>(kept);
    }
    mNodes.resize(kept);
    Remark(std::to_string(repeated.size()) +
           " nodes are given more than once with the same data; each was taken once.");
}

void MeshBuilder::dropRepeatedElements()
{
    auto const notAfter = [](ElementRecord const & a, ElementRecord const & b) { return a.id >= b.id; };
    if (std::adjacent_find(mElements.begin(), mElements.end(), notAfter) == mElements.end())
        return; // ascending, so each once
    std::vector<std::pair<int, int>> repeated;
    IdIndex const index(
        NumElement(), [this](int i) { return mElements[static_cast<std::size_t>(i)].id; }, repeated);
    for (auto const & [first, later] : repeated)
    {
        ElementRecord const & a = mElements[static_cast<std::size_t>(first)];
        ElementRecord const & b = mElements[static_cast<std::size_t>(later)];
        if (a.nodes != b.nodes || a.set != b.set)
            fail(b.mark, 0,
                 std::string(mWords.element) + " " + std::to_string(b.id) + " stands with other data already in line " +
                     std::to_string(mPlaces.Find(a.mark).second) + " of " + mPlaces.Find(a.mark).first +
                     ", expected each id once");
    }
    if (repeated.empty())
        return;
    std::size_t kept = 0;
    auto next = repeated.begin();
    for (std::size_t i = 0; i < mElements.size(); ++i)
        if (next != repeated.end() && static_cast<std::size_t>(next->second) == i)
            ++next;
        else
            mElements[kept++] = mElements[i];
    mElements.resize(kept);
    Remark(std::to_string(repeated.size()) +
           " elements are given more than once with the same data; each was taken once.");
}

void MeshBuilder::moveNodes(MeshModel & model)
{
    int const count = NumNode();
    model.mesh.sizeNode(count);
    model.nodeIds.reserve(mNodes.size());
    double(*const rows)[3] = model.mesh.GetNodeData();
    for (std::size_t i = 0; i < mNodes.size(); ++i)
    {
        std::copy(mNodes[i].place.begin(), mNodes[i].place.end(), rows[i + 1]);
        model.nodeIds.push_back(mNodes[i].id);
    }
    if (count > 0) // without nodes there is no row 0 either
        std::fill_n(rows[0], 3, 0.0);
    mNodes.clear();
    mNodes.shrink_to_fit();
}

void MeshBuilder::moveElements(MeshModel & model, IdIndex const & nodes, std::vector<int> const & positionOf)
{
    int const count = NumElement();
    model.mesh.sizeElem(count);
    model.elementIds.reserve(mElements.size());
    int(*const rows)[4] = model.mesh.GetElemData();
    std::fill_n(rows[0], 4, 0);
    ElementSet * set = nullptr;
    for (int e = 1; e <= count; ++e)
    {
        ElementRecord const & element = mElements.front();
        std::size_t const corners = element.nodes[3] == 0 ? 3 : 4;
        for (std::size_t k = 0; k < corners; ++k)
        {
            int const entry = nodes.Find(element.nodes[k]);
            if (entry < 0)
                fail(element.mark, element.columns[k],
                     std::string(mWords.element) + " " + std::to_string(element.id) + " names " + mWords.node + " " +
                         std::to_string(element.nodes[k]) + ", which the file does not have");
            rows[e][k] = positionOf.empty() ? entry + 1 : positionOf[static_cast<std::size_t>(entry)];
        }
        if (corners == 3)
            rows[e][3] = rows[e][0];
        if (!set || set->id != element.set)
            set = &Set(element.set);
        set->elements.push_back(e);
        model.elementIds.push_back(element.id);
        mElements.pop_front(); // gives memory back while the mesh takes it
    }
}

void MeshBuilder::moveSets(MeshModel & model)
{
    for (auto & [id, set] : mSets)
    {
        if (set.elements.empty()) // a property or a part of something else
            continue;
        set.thickness *= mUnit;
        model.sets.push_back(std::move(set));
    }
    mSets.clear();
    for (auto const & [name, count] : mSkipped)
        model.skipped.push_back({name, count});
    mSkipped.clear();
}

void MeshBuilder::remarkOnSize(MeshModel & model) const
{
    std::array<double, 3> low{}, high{};
    for (int n = 1; n <= model.mesh.numNode(); ++n)
        for (std::size_t c = 0; c < 3; ++c)
        {
            double const x = model.mesh.NodeValue(n, static_cast<int>(c));
            low[c] = n == 1 ? x : std::min(low[c], x);
            high[c] = n == 1 ? x : std::max(high[c], x);
        }
    double const largest = std::max({high[0] - low[0], high[1] - low[1], high[2] - low[2]});
    if (largest >= kSmallBox && largest <= kLargeBox)
        return;
    model.remarks.push_back("The bounding box is " + Shortest(high[0] - low[0]) + " x " + Shortest(high[1] - low[1]) +
                            " x " + Shortest(high[2] - low[2]) + " mm" +
                            (mIsUnitGiven ? "" : " with the file's lengths taken as mm") + ": check the length unit.");
}

MeshModel MeshBuilder::Finish()
{
    MeshModel model;
    model.format = mFormat;
    if (mElements.empty())
    {
        std::string found = std::to_string(mNodes.size()) + " nodes";
        for (auto const & [name, count] : mSkipped)
            if (found.size() < 200)
                found += ", " + std::to_string(count) + " " + name;
        throw InputError(mFile, 0, 0,
                         "has no triangles or quadrilaterals; found " + found + ", expected a " +
                             std::string(NameOf(mFormat)) + " surface mesh");
    }
    dropRepeatedElements();
    std::vector<int> positionOf;
    std::vector<std::pair<int, int>> repeated;
    IdIndex const index(
        NumNode(), [this](int i) { return mNodes[static_cast<std::size_t>(i)].id; }, repeated);
    dropRepeatedNodes(repeated, positionOf);
    moveNodes(model);
    moveElements(model, index, positionOf);
    moveSets(model);
    model.remarks = std::move(mRemarks);
    remarkOnSize(model);
    return model;
}

} // namespace voz::workbench
