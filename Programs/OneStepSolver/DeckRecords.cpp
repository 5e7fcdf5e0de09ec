// DeckRecords.cpp: fills the kernel's records from a deck.

#include "DeckRecords.h"

#include "VOZFormingResult.h"
#include "VOZMechanicalProp.h"
#include "VOZMesh.h"
#include "VOZSolverBCData.h"

#include <algorithm>
#include <cmath>

namespace voz::deck
{

namespace
{
constexpr double kMetresPerInch = 0.0254;
constexpr double kMmPerInch = 25.4;
constexpr double kPaPerMPa = 1.0e6;
constexpr double kUpliftPerForce = 8.9934075e-07; // of the kernel's records; the deck has a factor of its own
constexpr double kHalfPi = 1.57079632679489661923;
constexpr double kLengthTolerance = 0.01; // of a holder's length against its edges, which have six decimals

[[noreturn]] void fail(Deck const & deck, int line, std::string const & text)
{
    throw DeckError(deck.file, line, text);
}

Element const & elementOf(Deck const & deck, int number)
{
    return deck.elements[static_cast<std::size_t>(number) - 1];
}

// 0-based corner of a node in an element; -1 if it is none.
int cornerOf(Element const & element, int node)
{
    auto const end = element.nodes.begin() + element.corners;
    auto const at = std::find(element.nodes.begin(), end, node);
    return at == end ? -1 : static_cast<int>(at - element.nodes.begin());
}

// --- Materials -----------------------------------------------------------------------------------------------------

// The last number comes twice: the records up to there, each once.
std::size_t materialCount(Deck const & deck)
{
    return std::max<std::size_t>(deck.materials.size() - 1, 1);
}

// What the kernel would refuse without naming a line. With a curve, yield, exponent and strength play no part.
void checkNumbers(Deck const & deck, MaterialRecord const & record)
{
    auto const expect = [&](bool isGood, int line, char const * what, double value, char const * expected)
    {
        if (!isGood)
            fail(deck, line, std::string(what) + " is " + std::to_string(value) + "; expected " + expected);
    };
    expect(record.thickness > 0.0, record.line + 1, "the thickness (field 6)", record.thickness, "more than 0 inches");
    expect(record.rValue > 0.0, record.line, "the anisotropy (field 7)", record.rValue, "more than 0");
    if (!record.curve.empty())
        return;
    expect(record.nValue > 0.0 && record.nValue <= 1.0, record.line, "the hardening exponent (field 6)", record.nValue,
           "more than 0, at most 1");
    expect(record.kValue > 0.0, record.line, "the strength coefficient (field 8)", record.kValue, "more than 0 MPa");
    expect(record.yield >= 0.0 && record.yield <= record.kValue, record.line, "the yield stress (field 5)",
           record.yield, "0 MPa to the strength coefficient");
}

void checkMaterials(Deck const & deck)
{
    MaterialRecord const & last = deck.materials.back();
    MaterialRecord const & twin = deck.materials[materialCount(deck) - 1];
    for (std::size_t i = 0; i + 1 < deck.materials.size(); ++i)
        if (deck.materials[i].number != static_cast<int>(i) + 1)
            fail(deck, deck.materials[i].line,
                 "the material record has the number " + std::to_string(deck.materials[i].number) + "; expected " +
                     std::to_string(i + 1));
    if (last.number != twin.number || last.yield != twin.yield || last.nValue != twin.nValue ||
        last.rValue != twin.rValue || last.kValue != twin.kValue || last.thickness != twin.thickness)
        fail(deck, last.line, "the last material record differs from the one before it; expected the same once more");
    for (std::size_t i = 0; i < materialCount(deck); ++i)
        checkNumbers(deck, deck.materials[i]);
}

void fillProperty(MaterialRecord const & record, SolverSettings const & settings, VOZMechanicalProp_s & o_prop)
{
    o_prop.m_dNValue = record.nValue;
    o_prop.m_dRValue = record.rValue;
    o_prop.m_dYoungsModulus = settings.youngsModulus;
    o_prop.m_dPoisson = settings.poissonsRatio;
    o_prop.m_dKValue = record.kValue * kPaPerMPa;
    o_prop.m_dYield = record.yield * kPaPerMPa;
    o_prop.m_nNumPoints = static_cast<int>(record.curve.size());
    if (!record.curve.empty())
        o_prop.m_padPoints = new double[2 * record.curve.size()];
    for (std::size_t i = 0; i < record.curve.size(); ++i)
    {
        o_prop.m_padPoints[2 * i] = record.curve[i][0];
        o_prop.m_padPoints[2 * i + 1] = record.curve[i][1] * kPaPerMPa;
    }
    VOZMechanicalProp_s::EvalMechanicalDataForSolver(o_prop);
}

void setMaterials(Deck const & deck, SolverSettings const & settings, VOZMultiStageSolverIOData_s & io_data)
{
    checkMaterials(deck);
    std::size_t const count = materialCount(deck);
    auto thicknesses = std::make_unique<double[]>(count);
    auto properties = std::make_unique<VOZMechanicalProp_s[]>(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        thicknesses[i] = deck.materials[i].thickness * kMetresPerInch;
        fillProperty(deck.materials[i], settings, properties[i]);
    }
    io_data.SetMaterialData(static_cast<int>(count), thicknesses.release(), properties.release());
}

// --- Meshes --------------------------------------------------------------------------------------------------------

std::unique_ptr<VOZTopologyMesh_s> makeTopology(Deck const & deck)
{
    auto elements = std::make_unique<VOZElement_s[]>(deck.elements.size());
    for (std::size_t e = 0; e < deck.elements.size(); ++e)
    {
        Element const & element = deck.elements[e];
        int const material = MaterialOf(deck, element);
        if (material < 0)
            fail(deck, element.line,
                 "element " + std::to_string(e + 1) + " has the property " + std::to_string(element.property) +
                     "; expected the number of a material record");
        for (int corner = 0; corner < element.corners; ++corner)
            elements[e].m_anNodeIndices[corner] = element.nodes[static_cast<std::size_t>(corner)] - 1;
        elements[e].m_nMaterialIndex = material;
    }
    auto topology = std::make_unique<VOZTopologyMesh_s>();
    topology->SetNodesElements(static_cast<int>(deck.nodes.size()), static_cast<int>(deck.elements.size()),
                               elements.release());
    return topology;
}

std::unique_ptr<double[]> coordinates(Deck const & deck)
{
    auto result = std::make_unique<double[]>(3 * deck.nodes.size());
    for (std::size_t n = 0; n < deck.nodes.size(); ++n)
        for (std::size_t c = 0; c < 3; ++c)
            result[3 * n + c] = deck.nodes[n][c] * kMetresPerInch;
    return result;
}

void setMeshes(Deck const & deck, VOZSolverStage_s & io_stage)
{
    auto topology = makeTopology(deck);
    VOZTopologyMesh_s * const shared = topology.get();
    auto part = std::make_unique<VOZMesh_s>();
    part->SetData(coordinates(deck).release(), nullptr, nullptr, true, topology.release());
    auto blank = std::make_unique<VOZMesh_s>();
    blank->SetData(coordinates(deck).release(), nullptr, nullptr, false, shared);
    auto result = std::make_unique<VOZFormingResult_s>(part.get());
    io_stage.SetPartMeshData(part.release());
    io_stage.SetBlankMeshData(blank.release());
    io_stage.SetFormingResult(result.release());
}

// --- Blank holders ---------------------------------------------------------------------------------------------------

double edgeLength(Deck const & deck, HolderEdge const & edge)
{
    std::array<double, 3> const & a = deck.nodes[static_cast<std::size_t>(edge.node1) - 1];
    std::array<double, 3> const & b = deck.nodes[static_cast<std::size_t>(edge.node2) - 1];
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

bool hasForce(Holder const & holder)
{
    return std::any_of(holder.edges.begin(), holder.edges.end(),
                       [](HolderEdge const & edge) { return edge.restraint != 0.0; });
}

// Whether the first head is that of the full holder, in metres, or that of a single one, in inches: its length against
// the sum of its edges tells. A full holder without a length has no force.
bool isFullHolder(Deck const & deck, Holder const & holder)
{
    double sum = 0.0;
    for (HolderEdge const & edge : holder.edges)
        sum += edgeLength(deck, edge);
    auto const matches = [&](double unit)
    { return sum > 0.0 && std::fabs(holder.length - unit * sum) <= kLengthTolerance * unit * sum; };
    if (matches(1.0))
        return false;
    if (matches(kMetresPerInch) || (holder.length == 0.0 && !hasForce(holder)))
        return true;
    fail(deck, holder.line,
         "the holder's length (field 6) is " + std::to_string(holder.length) + ", its edges measure " +
             std::to_string(sum) + " inches; expected the same, or the same in metres");
}

void addEdges(Deck const & deck, Holder const & holder, double perMetre, std::vector<VOZSolverBHF_s> & io_edges)
{
    for (HolderEdge const & edge : holder.edges)
    {
        Element const & element = elementOf(deck, edge.element);
        VOZSolverBHF_s record;
        record.m_nElement = edge.element - 1;
        record.m_dForce = edge.restraint * perMetre;
        record.m_nFirstPosition = cornerOf(element, edge.node1);
        record.m_nSecondPosition = cornerOf(element, edge.node2);
        int const step = std::abs(record.m_nFirstPosition - record.m_nSecondPosition);
        if (record.m_nFirstPosition < 0 || record.m_nSecondPosition < 0 || (step != 1 && step != element.corners - 1))
            fail(deck, edge.line,
                 "nodes " + std::to_string(edge.node1) + " and " + std::to_string(edge.node2) +
                     " are no side of element " + std::to_string(edge.element) + "; expected one");
        if (edge.restraint < 0.0)
            fail(deck, edge.line + 1, "the restraint of the edge is negative; expected 0 or more");
        io_edges.push_back(record);
    }
}

// The heads behind a full holder's repeat its edges at the large inner loops: field 28 of the first control line counts
// those loops twice. The others are single holders, whose rows are in newtons per inch.
std::vector<VOZSolverBHF_s> holderEdges(Deck const & deck)
{
    std::vector<VOZSolverBHF_s> edges;
    std::size_t next = 0;
    if (!deck.holders.empty() && isFullHolder(deck, deck.holders[0]))
    {
        addEdges(deck, deck.holders[0], 1.0, edges);
        int const repeated = deck.holderCount - static_cast<int>(deck.holders.size());
        if (repeated < 0 || repeated + 1 > static_cast<int>(deck.holders.size()))
            fail(deck, deck.holders[0].line,
                 "the block has " + std::to_string(deck.holders.size()) +
                     " heads, field 28 of the first control line "
                     "says " +
                     std::to_string(deck.holderCount) + "; expected the heads and the large inner loops");
        next = static_cast<std::size_t>(repeated) + 1;
    }
    for (; next < deck.holders.size(); ++next)
        addEdges(deck, deck.holders[next], 1.0 / kMetresPerInch, edges);
    return edges;
}

// --- Beads, pads, constraints --------------------------------------------------------------------------------------

std::vector<VOZSolverDrawbead_s> beadSegments(Deck const & deck)
{
    std::vector<VOZSolverDrawbead_s> segments;
    for (Bead const & bead : deck.beads)
    {
        if (bead.force < 0.0)
            fail(deck, bead.line, "the bead's force is negative; expected 0 or more");
        for (BeadSegment const & segment : bead.segments)
        {
            VOZSolverDrawbead_s record;
            record.m_nElement = segment.element - 1;
            record.m_dForce = bead.force;
            record.m_dUplift = bead.force * kUpliftPerForce;
            for (std::size_t i = 0; i < segment.natural.size(); ++i)
            {
                if (std::fabs(segment.natural[i]) > 1.001)
                    fail(deck, segment.line, "a natural coordinate is beyond -1 to 1; expected it within");
                record.m_adEdgeValues[i] = segment.natural[i];
            }
            segments.push_back(record);
        }
    }
    return segments;
}

// Shear per element, Pa, where all corners of the element lie under the pad; a later pad counts before an earlier one.
std::vector<double> padShear(Deck const & deck)
{
    std::vector<double> shear(deck.pads.empty() ? 0 : deck.elements.size(), 0.0);
    std::vector<std::size_t> padAt(deck.nodes.size(), 0); // number of the last pad that named the node
    for (std::size_t pad = 1; pad <= deck.pads.size(); ++pad)
    {
        Pad const & record = deck.pads[pad - 1];
        if (record.pressure < 0.0)
            fail(deck, record.line, "the pad's pressure is negative; expected 0 or more");
        for (int const node : record.nodes)
            padAt[static_cast<std::size_t>(node) - 1] = pad;
        for (std::size_t e = 0; e < deck.elements.size() && !record.nodes.empty(); ++e)
        {
            Element const & element = deck.elements[e];
            if (std::all_of(element.nodes.begin(), element.nodes.begin() + element.corners,
                            [&](int node) { return padAt[static_cast<std::size_t>(node) - 1] == pad; }))
                shear[e] = record.pressure * deck.friction;
        }
    }
    return shear;
}

// In the plane alone: z and the rotations are no unknowns of the solve.
std::vector<VOZSolverNodeConstraint2D_s> constraints(Deck const & deck)
{
    std::vector<VOZSolverNodeConstraint2D_s> records;
    for (DisplacedNode const & entry : deck.displaced)
        for (std::size_t direction = 0; direction < 2; ++direction)
            if (entry.flags[direction])
            {
                VOZSolverNodeConstraint2D_s record;
                record.m_nNode = entry.node - 1;
                record.m_dAngle = direction == 0 ? 0.0 : kHalfPi;
                record.m_dDisplacement = entry.values[direction] * kMmPerInch;
                records.push_back(record);
            }
    return records;
}

// The rows as an array that a record takes over; null for none.
template <class Record>
Record * released(std::vector<Record> const & rows)
{
    if (rows.empty())
        return nullptr;
    auto array = std::make_unique<Record[]>(rows.size());
    std::copy(rows.begin(), rows.end(), array.get());
    return array.release();
}

std::unique_ptr<VOZSolverBCData_s> makeActions(Deck const & deck, SolverSettings const & settings)
{
    auto actions = std::make_unique<VOZSolverBCData_s>();
    auto const edges = holderEdges(deck);
    auto const segments = beadSegments(deck);
    auto const fixed = constraints(deck);
    auto const shear = padShear(deck);
    actions->SetBHFs(static_cast<int>(edges.size()), released(edges));
    actions->SetDrawbeads(static_cast<int>(segments.size()), released(segments));
    actions->SetNodeConstraints2D(static_cast<int>(fixed.size()), released(fixed));
    actions->SetPressureFrictionValues(released(shear));
    actions->SetProcess(settings.toolFriction.value_or(deck.controlFlag), deck.friction);
    return actions;
}
} // namespace

int MaterialOf(Deck const & i_deck, Element const & i_element)
{
    auto const count = static_cast<int>(materialCount(i_deck));
    int const first = i_deck.materials.front().number; // 0 for the one record of a deck without properties, else 1
    int const index = i_element.property - first;
    return i_element.property < first || index >= count ? -1 : index;
}

std::unique_ptr<VOZMultiStageSolverIOData_s> MakeRecords(Deck const & i_deck, SolverSettings const & i_settings)
{
    constexpr double kIdentity[9] = {1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
    constexpr double kNowhere[3] = {0.0, 0.0, 0.0};
    auto data = std::make_unique<VOZMultiStageSolverIOData_s>();
    data->m_nFirstControl = 3; // of every job, like the next two
    data->m_nSecondControl = 3;
    data->m_dControl = 1.0;
    setMaterials(i_deck, i_settings, *data);
    auto stages = std::make_unique<VOZSolverStage_s[]>(1);
    setMeshes(i_deck, stages[0]);
    stages[0].SetLocalCS(kIdentity, kNowhere);
    stages[0].SetBCData(makeActions(i_deck, i_settings).release());
    data->SetStagesData(1, stages.release());
    return data;
}

} // namespace voz::deck
