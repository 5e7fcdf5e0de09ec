// StandInSolver.cpp: a program in the place of the solver, for the tests alone: reads a keyword deck as a solver does
// and leaves a d3plot family in which the blank follows a known motion.
//
//     StandInSolver i=inputls.dyn
//
// With f the punch's share of its whole way, the blank has the logarithmic strain f G with G of eigenvalues
// kMajor at kAngle from x and kMinor across, plus and minus f kBending on the outer and the inner surface; it is
// carried along with the punch. The equivalent stress is kYield (1 + f) in the middle.
//
// StandInMode in the environment: "crash" (exit code 7 after half of the outputs), "halfway" (the last state cut, an
// error said, exit code 0), "garbage" (bytes that are no results), "nothing" (no results), "adaptive" (from half on
// each quadrilateral is two triangles, in a root of its own), "slow" (a pause ahead of each state), "double" (words of
// 8 bytes). Exit codes: 3 for a deck that is refused.

#include "D3plotWriter.h"
#include "DeckModel.h"
#include "StandInMotion.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <thread>

namespace
{
using standin::DeckModel;

std::string mode()
{
    char const * const value = std::getenv("StandInMode");
    return value != nullptr ? value : "";
}

// The mesh of the deck in the solver's own numbers: nodes and shells from 1 in the order of their labels, materials in
// that of the parts.
d3plot::Model modelOf(DeckModel const & deck, bool isRefined)
{
    d3plot::Model model;
    model.options.layers = deck.pointsOfOutput;
    model.options.wordBytes = mode() == "double" ? 8 : 4;
    std::map<int, int> place, material;
    for (auto const & [label, point] : deck.nodes)
    {
        model.nodes.push_back(point);
        model.nodeLabels.push_back(label);
        place[label] = static_cast<int>(model.nodes.size());
    }
    for (standin::Part const & part : deck.parts)
    {
        model.parts.push_back(part.id);
        model.types.push_back(part.isRigid ? d3plot::kRigid : 37);
        material[part.id] = static_cast<int>(model.parts.size());
    }
    int further = 1000000; // labels of what refinement adds
    for (standin::DeckShell const & shell : deck.shells)
    {
        std::array<int, 4> nodes{};
        for (std::size_t k = 0; k < 4; ++k)
            nodes[k] = place[shell.nodes[k]];
        bool const isSplit = isRefined && nodes[3] != nodes[2] && !model.types.empty() &&
                             model.types[static_cast<std::size_t>(material[shell.part] - 1)] != d3plot::kRigid;
        model.shells.push_back(
            {isSplit ? std::array<int, 4>{nodes[0], nodes[1], nodes[2], nodes[2]} : nodes, material[shell.part]});
        model.shellLabels.push_back(shell.label);
        if (isSplit)
        {
            model.shells.push_back({{nodes[0], nodes[2], nodes[3], nodes[3]}, material[shell.part]});
            model.shellLabels.push_back(further++);
        }
    }
    return model;
}

d3plot::State stateOf(DeckModel const & deck, d3plot::Model const & model, double time)
{
    d3plot::State state;
    state.time = time;
    double const whole = deck.Way(deck.end);
    double const share = deck.Way(time) / whole;
    std::set<int> blankNodes;
    for (d3plot::Shell const & shell : model.shells)
        if (model.types[static_cast<std::size_t>(shell.material - 1)] != d3plot::kRigid)
            blankNodes.insert(shell.node.begin(), shell.node.end());
    for (std::size_t i = 0; i < model.nodes.size(); ++i)
        state.nodes.push_back(blankNodes.count(static_cast<int>(i) + 1) == 1
                                  ? standin::Moved(model.nodes[i], share, deck.Way(time))
                                  : model.nodes[i]);
    d3plot::ShellValues values;
    for (int layer = 0; layer < model.options.layers; ++layer)
        values.stress.push_back({standin::kYield * (1.0 + share) * (1.0 + 0.1 * layer), 0, 0, 0, 0, 0});
    values.inner = standin::Strain(share, -1.0);
    values.outer = standin::Strain(share, 1.0);
    state.shells.assign(model.shells.size(), values);
    return state;
}

void write(std::string const & name, std::string const & bytes)
{
    std::ofstream(name, std::ios::binary) << bytes;
}

std::string memberName(std::string const & root, int number)
{
    return root + (number < 10 ? "0" : "") + std::to_string(number);
}

int solve(std::string const & file)
{
    DeckModel const deck(file);
    if (mode() == "nothing")
        return 0;
    if (mode() == "garbage")
    {
        write("d3plot", std::string(5000, 'x'));
        return 0;
    }
    d3plot::Model model = modelOf(deck, false);
    std::string root = "d3plot";
    write(root, d3plot::Writer(model).Geometry() + d3plot::Writer(model).EndMark());
    int number = 0;
    for (std::size_t i = 0; i < deck.outputTimes.size(); ++i)
    {
        if (mode() == "slow")
            std::this_thread::sleep_for(std::chrono::milliseconds(150));
        if (mode() == "crash" && i == deck.outputTimes.size() / 2)
        {
            std::printf(" *** Error 40505 (SOL+505)\n shells with a negative area\n");
            return 7;
        }
        if (mode() == "adaptive" && i == deck.outputTimes.size() / 2)
        {
            model = modelOf(deck, true);
            root = "d3plotaa";
            number = 0;
            write(root, d3plot::Writer(model).Geometry() + d3plot::Writer(model).EndMark());
        }
        std::string bytes = d3plot::Writer(model).Of(stateOf(deck, model, deck.outputTimes[i]));
        if (mode() == "halfway" && i + 1 == deck.outputTimes.size())
            bytes.resize(bytes.size() / 2);
        write(memberName(root, ++number), bytes + (mode() == "halfway" ? "" : d3plot::Writer(model).EndMark()));
        std::printf("%7d t %.4E dt 1.00E-07 write d3plot file\n", static_cast<int>(1000 * i + 1), deck.outputTimes[i]);
        std::fflush(stdout);
    }
    std::printf(mode() == "halfway" ? "\n E r r o r   t e r m i n a t i o n\n"
                                    : "\n N o r m a l    t e r m i n a t i o n\n");
    return 0;
}
} // namespace

int main(int argc, char ** argv)
{
    std::string const file = argc >= 2 ? argv[1] : "";
    if (file.rfind("i=", 0) != 0)
    {
        std::printf("StandInSolver: expected i=DECK\n");
        return 2;
    }
    try
    {
        return solve(file.substr(2));
    }
    catch (std::exception const & error)
    {
        std::printf(" *** Error: %s\n", error.what());
        return 3;
    }
}
