// D3plotLayout.cpp: the control words, in the order of the file.

#include "D3plotLayout.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>

namespace voz::launch
{
namespace
{
// clang-format off
enum Word // of the control words, from 0
{
    kFileType = 11, kNdim = 15, kNumnp = 16, kNglbv = 18, kIt = 19, kIu = 20, kIv = 21, kIa = 22,
    kNel8 = 23, kNumds = 25, kNv3d = 27, kNel2 = 28, kNv1d = 30, kNel4 = 31, kNv2d = 33, kNeips = 35, kMaxint = 36, kNmsph = 37,
    kNarbs = 39, kNelt = 40, kNv3dt = 42, kIoshl1 = 43, kIoshl2 = 44, kIoshl3 = 45, kIoshl4 = 46, kIalemat = 47,
    kNcfdv1 = 48, kNadapt = 50, kNmmat = 51, kNpefg = 54, kNel48 = 55, kIdtdt = 56, kExtra = 57,
    kNumWords = 64
};
enum ExtraWord
{
    kNel20 = 0, kNt3d = 1, kNel27 = 2, kNel21p = 4, kNel15t = 5, kNel20t = 7, kNel40p = 8, kNel64 = 9, kPenout = 14,
    kEngout = 15, kNumExtra = 16
};
// clang-format on

constexpr std::int64_t kFull = std::numeric_limits<std::int64_t>::max() / 4; // sums and products stop here
constexpr std::int64_t kGreatestWord = std::int64_t{1} << 40;                // of any control word
constexpr std::int64_t kLeastDeletionByElement = 10000;                      // of -MAXINT
constexpr std::int64_t kIsOn = 1000;                                         // of the four flags of shells
constexpr std::int64_t kLongLabels = 1000;                                   // above it, of FILETYPE
constexpr std::int64_t kLabelHead = 10;
constexpr std::int64_t kLabelHeadWithParts = 16;

using Words = std::array<std::int64_t, kNumWords>;
using Extra = std::array<std::int64_t, kNumExtra>;

std::int64_t sum(std::int64_t a, std::int64_t b)
{
    return a > kFull - b ? kFull : a + b;
}

std::int64_t product(std::int64_t a, std::int64_t b)
{
    return a != 0 && b > kFull / a ? kFull : a * b;
}

std::int64_t digit(std::int64_t value, int place)
{
    for (; place > 0; --place)
        value /= 10;
    return value % 10;
}

// Bits of another width or order hardly ever look like this.
bool isPlausible(Words const & words)
{
    for (std::size_t word = kNdim; word <= kExtra; ++word)
        if (words[word] < -kGreatestWord || words[word] > kGreatestWord)
            return false;
    for (int flag : {kIu, kIv, kIa})
        if (words[static_cast<std::size_t>(flag)] < 0 || words[static_cast<std::size_t>(flag)] > 1)
            return false;
    for (int count : {kNumnp, kNglbv, kIt, kNv3d, kNel2, kNv1d, kNel4, kNv2d, kNeips, kNelt, kNv3dt, kNarbs})
        if (words[static_cast<std::size_t>(count)] < 0)
            return false;
    return words[kNdim] >= 2 && words[kNdim] <= 9;
}

Words readWords(WordReader & io_reader)
{
    Words words{};
    for (WordFormat const format :
         {WordFormat{4, false}, WordFormat{8, false}, WordFormat{4, true}, WordFormat{8, true}})
    {
        io_reader.SetFormat(format);
        if (io_reader.WordsOf(0) < kNumWords)
            continue;
        io_reader.ReadIntegers({}, words);
        if (isPlausible(words))
            return words;
    }
    throw ResultsError(io_reader.Root().name + ": " + std::to_string(io_reader.Root().files.front().bytes) +
                       " bytes that are no d3plot file; expected 64 control words of 4 or 8 bytes");
}

void refuse(WordReader const & reader, std::string const & what)
{
    throw ResultsError(reader.Root().name + ": " + what + "; leave it out of the solver's output and run again");
}

void refuseWhatIsNotKnown(WordReader const & reader, Words const & words)
{
    if (words[kNdim] < 3 || words[kNdim] == 6 || words[kNdim] > 7)
        refuse(reader, "NDIM " + std::to_string(words[kNdim]) +
                           " (a plane model, a road surface or rigid bodies' own states) is not read here");
    if (words[kNdim] == 7)
        refuse(reader, "a road surface (NDIM 7) is not read here");
    if (words[kNmsph] > 0 || words[kNpefg] > 0 || words[kNcfdv1] != 0)
        refuse(reader, "particles and fluids are not read here");
    if (words[kNumds] < 0)
        refuse(reader, "four points in the plane of each shell (MAXINT below 0) are not read here");
    if (words[kFileType] > kLongLabels && words[kFileType] < 2 * kLongLabels)
        refuse(reader,
               "labels of twice the width (FILETYPE " + std::to_string(words[kFileType]) + ") are not read here");
    for (int count : {kIalemat, kNadapt, kNmmat, kNel48, kExtra})
        if (words[static_cast<std::size_t>(count)] < 0)
            refuse(reader, "control word " + std::to_string(count) + " is negative, a count was expected");
}

// Words of a node's values beyond coordinates, velocities and accelerations: temperatures and their flux, added mass,
// the temperature's rate, residual forces.
std::int64_t moreOfNode(Words const & words)
{
    constexpr std::int64_t kTemperatures[] = {0, 1, 4, 6};
    std::int64_t const kind = digit(words[kIt], 0);
    std::int64_t more = kTemperatures[kind > 3 ? 0 : kind];
    more += digit(words[kIt], 1) == 1 ? 1 : 0;
    more += digit(words[kIdtdt], 0) == 1 ? 1 : 0;
    more += digit(words[kIdtdt], 1) == 1 ? 6 : 0;
    return more;
}

std::int64_t materialTypes(WordReader & io_reader, Words const & words, std::int64_t at, D3plotLayout & o_layout)
{
    if (words[kNdim] != 5)
        return at;
    std::array<std::int64_t, 2> head{}; // NUMRBE, NUMMAT
    io_reader.ReadIntegers(io_reader.Advance({}, at), head);
    if (head[0] < 0 || head[0] > words[kNel4] || head[1] < 0 || head[1] > io_reader.WordsOfAll())
        refuse(io_reader,
               std::to_string(head[0]) + " rigid shells and " + std::to_string(head[1]) + " material types cannot be");
    o_layout.numRigidShells = head[0];
    o_layout.numTypes = head[1];
    o_layout.typesAt = at + 2;
    return at + 2 + head[1];
}

void placeLabels(WordReader & io_reader, Words const & words, std::int64_t at, D3plotLayout & o_layout)
{
    if (words[kNarbs] < kLabelHead)
        return;
    std::int64_t sort = 0; // NSORT: negative where parts have labels too
    io_reader.ReadIntegers(io_reader.Advance({}, at), {&sort, 1});
    o_layout.nodeLabelsAt = at + (sort < 0 ? kLabelHeadWithParts : kLabelHead);
    std::int64_t const solids = std::abs(words[kNel8]);
    o_layout.shellLabelsAt = sum(o_layout.nodeLabelsAt, sum(words[kNumnp], sum(solids, words[kNel2])));
    std::int64_t end = sum(o_layout.shellLabelsAt, sum(words[kNel4], words[kNelt]));
    if (sort < 0)
    {
        o_layout.partsAt = end;
        o_layout.numMaterials = words[kNmmat];
        end = sum(end, product(3, words[kNmmat]));
    }
    if (end > sum(at, words[kNarbs]))
        refuse(io_reader, "NARBS " + std::to_string(words[kNarbs]) + " is too small for the labels of its nodes, " +
                              "elements and parts");
}

std::int64_t furtherNodes(Words const & words, Extra const & extra)
{
    std::int64_t more = words[kNel8] < 0 ? product(2, -words[kNel8]) : 0;
    more = sum(more, product(5, words[kNel48]));
    constexpr std::pair<int, int> kHigher[] = {{kNel20, 13},  {kNel27, 28},  {kNel21p, 22}, {kNel15t, 8},
                                               {kNel20t, 21}, {kNel40p, 41}, {kNel64, 65}};
    for (auto const & [word, perElement] : kHigher)
        more = sum(more, product(perElement, extra[static_cast<std::size_t>(word)]));
    return more;
}

// The words behind the control words; 0 where there are fewer.
Extra readExtra(WordReader & io_reader, Words const & words)
{
    Extra extra{};
    if (words[kExtra] > io_reader.WordsOfAll() - kNumWords)
        refuse(io_reader, "EXTRA " + std::to_string(words[kExtra]) + " is more than the file holds");
    std::size_t const count = std::min(static_cast<std::size_t>(words[kExtra]), extra.size());
    io_reader.ReadIntegers(io_reader.Advance({}, kNumWords), std::span(extra).first(count));
    for (std::int64_t const word : extra)
        if (word < 0)
            refuse(io_reader, "a negative count of elements of higher order");
    if (extra[kPenout] != 0 || extra[kEngout] != 0)
        refuse(io_reader, "penetrations and energies of contacts at nodes (PENOUT, ENGOUT) are not read here");
    return extra;
}

void placeGeometry(WordReader & io_reader, Words const & words, Extra const & extra, D3plotLayout & o_layout)
{
    std::int64_t at = sum(kNumWords, words[kExtra]);
    at = sum(materialTypes(io_reader, words, at, o_layout), words[kIalemat]);
    o_layout.coordinatesAt = at;
    at = sum(at, product(3, words[kNumnp]));
    at = sum(at, product(9, sum(std::abs(words[kNel8]), words[kNelt])));
    o_layout.shellsAt = sum(at, product(6, words[kNel2]));
    at = sum(o_layout.shellsAt, product(5, words[kNel4]));
    o_layout.geometryEnd = sum(at, sum(words[kNarbs], sum(product(2, words[kNadapt]), furtherNodes(words, extra))));
    if (o_layout.geometryEnd > io_reader.WordsOfAll())
        throw ResultsError(io_reader.Root().name + ": its geometry of " + std::to_string(words[kNumnp]) +
                           " nodes and " + std::to_string(words[kNel4]) + " shells takes " +
                           std::to_string(o_layout.geometryEnd) + " words, the files have " +
                           std::to_string(io_reader.WordsOfAll()));
    placeLabels(io_reader, words, at, o_layout);
}

// Per shell: the points, eight resultants, thickness and two values of the element, twelve strains, the energy.
void placeShellValues(WordReader const & reader, Words const & words, D3plotLayout & o_layout)
{
    o_layout.hasStress = words[kIoshl1] == kIsOn;
    std::int64_t const plastic = words[kIoshl2] == kIsOn ? 1 : 0;
    std::int64_t const resultants = words[kIoshl3] == kIsOn ? 8 : 0;
    std::int64_t const more = words[kIoshl4] == kIsOn ? 4 : 0;
    o_layout.shellWords = words[kNv2d];
    o_layout.layerWords = (o_layout.hasStress ? 6 : 0) + plastic + words[kNeips];
    std::int64_t const behindPoints = sum(product(o_layout.numLayers, o_layout.layerWords), resultants);
    if (words[kNv2d] != 0 && behindPoints + more > words[kNv2d])
        refuse(reader, "NV2D " + std::to_string(words[kNv2d]) + " is too small for " +
                           std::to_string(o_layout.numLayers) + " points through the thickness");
    bool const hasStrain =
        words[kIdtdt] >= 100 ? digit(words[kIdtdt], 4) == 1 : words[kNv2d] - behindPoints - more >= 12;
    if (hasStrain && words[kNv2d] - behindPoints - more >= 12)
        o_layout.strainAt = behindPoints + (more == 0 ? 0 : 3); // the energy, fourth of these, follows the strains
}

void placeState(WordReader const & reader, Words const & words, Extra const & extra, D3plotLayout & o_layout)
{
    std::int64_t const nodes = words[kNumnp];
    std::int64_t at = sum(1, words[kNglbv]);
    if (words[kIu] == 1)
        o_layout.nodesInState = at;
    at = sum(at, product(nodes, 3 * (words[kIu] + words[kIv] + words[kIa]) + moreOfNode(words)));
    std::int64_t const solids = std::abs(words[kNel8]);
    at = sum(at, product(solids, extra[kNt3d])); // temperatures of solids
    at = sum(at, sum(product(solids, words[kNv3d]), product(words[kNelt], words[kNv3dt])));
    at = sum(at, product(words[kNel2], words[kNv1d]));
    o_layout.shellsInState = at;
    at = sum(at, product(words[kNel4] - o_layout.numRigidShells, words[kNv2d]));

    std::int64_t const maxint = words[kMaxint];
    o_layout.numLayers = maxint;
    if (maxint < 0)
    {
        o_layout.isDeletionByNode = -maxint < kLeastDeletionByElement;
        o_layout.numLayers = o_layout.isDeletionByNode ? -maxint : -maxint - kLeastDeletionByElement;
        std::int64_t const ahead = o_layout.isDeletionByNode ? 0 : sum(solids, words[kNelt]);
        o_layout.deletionInState = sum(at, ahead);
        at = sum(at, o_layout.isDeletionByNode ? nodes : sum(ahead, sum(words[kNel4], words[kNel2])));
    }
    o_layout.stateWords = at;
    placeShellValues(reader, words, o_layout);
}
} // namespace

D3plotLayout ReadLayout(WordReader & io_reader)
{
    Words const words = readWords(io_reader);
    refuseWhatIsNotKnown(io_reader, words);
    D3plotLayout layout;
    layout.format = io_reader.Format();
    layout.numNodes = words[kNumnp];
    layout.numShells = words[kNel4];
    Extra const extra = readExtra(io_reader, words);
    placeGeometry(io_reader, words, extra, layout);
    placeState(io_reader, words, extra, layout);
    return layout;
}
} // namespace voz::launch
