// DeckModel.h: what the stand-in solver makes of a keyword deck: every card by its columns, every number that one card
// takes from another looked up. A deck that a solver would stumble over is refused with what is wrong.

#ifndef DECKMODEL_H
#define DECKMODEL_H

#include "KeywordDeck.h"

#include <array>
#include <cmath>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace standin
{
using Curve = std::vector<std::pair<double, double>>;

struct Part
{
    int id = 0;
    bool isRigid = false;
};

struct DeckShell
{
    int label = 0, part = 0;
    std::array<int, 4> nodes{}; // labels; the fourth repeats the third in a triangle
};

class DeckModel
{
public:
    explicit DeckModel(std::filesystem::path const & i_file) : deck(i_file)
    {
        ReadEnd();
        ReadParts();
        ReadMeshes();
        ReadOutput();
        ReadMotion();
        CheckContacts();
    }

    keyworddeck::Deck deck;
    double end = 0.0;
    std::vector<double> outputTimes; // of the curve, then the end
    int pointsOfOutput = 0;          // MAXINT
    std::vector<Part> parts;         // in the order of the deck
    std::map<int, std::array<double, 3>> nodes;
    std::vector<DeckShell> shells;
    Curve velocity; // of the punch

    // The way of the punch so far: the curve's trapezoids.
    double Way(double i_time) const
    {
        double way = 0.0;
        for (std::size_t k = 1; k < velocity.size() && velocity[k - 1].first < i_time; ++k)
        {
            auto const [t0, v0] = velocity[k - 1];
            auto const [t1, v1] = velocity[k];
            double const t = std::min(i_time, t1);
            way += (t - t0) * (v0 + 0.5 * (v1 - v0) * (t - t0) / (t1 - t0));
        }
        return way;
    }

private:
    static void Expect(bool i_isGood, std::string const & i_what)
    {
        if (!i_isGood)
            throw std::runtime_error("the deck's " + i_what);
    }

    static void Ascends(Curve const & i_curve, std::string const & i_what)
    {
        for (std::size_t i = 1; i < i_curve.size(); ++i)
            Expect(i_curve[i].first > i_curve[i - 1].first, i_what + " does not ascend");
    }

    void ReadEnd()
    {
        end = deck.one("CONTROL_TERMINATION").card(0).real("ENDTIM");
        Expect(end > 0.0, "end is not above 0");
        auto const & step = deck.one("CONTROL_TIMESTEP").card(0);
        Expect(step.real("TSSFAC") > 0.0 && step.real("TSSFAC") <= 1.0, "TSSFAC is no factor");
        Expect(step.real("DT2MS") <= 0.0, "DT2MS is positive: it would add mass to all elements");
    }

    void ReadParts()
    {
        std::set<int> materials, sections;
        for (auto const * block : deck.all("SECTION_SHELL"))
        {
            Expect(block->card(0).integer("NIP") >= 1, "section has no points");
            for (char const * corner : {"T1", "T2", "T3", "T4"})
                Expect(block->card(1).real(corner) > 0.0, "section has no thickness");
            Expect(sections.insert(block->card(0).integer("SECID")).second, "section comes twice");
        }
        std::set<int> rigid;
        for (auto const * block : deck.all("MAT_RIGID"))
            rigid.insert(block->card(0).integer("MID"));
        materials = rigid;
        for (auto const * block : deck.all("MAT_TRANSVERSELY_ANISOTROPIC_ELASTIC_PLASTIC"))
        {
            materials.insert(block->card(0).integer("MID"));
            Curve const hardening = deck.curve(block->card(0).integer("HLCID"));
            Ascends(hardening, "hardening curve");
            Expect(hardening.front().first == 0.0 && hardening.front().second > 0.0, "hardening does not begin at 0");
        }
        for (auto const * block : deck.all("PART"))
        {
            auto const & card = block->card(1);
            Expect(sections.count(card.integer("SECID")) == 1, "part has no section");
            Expect(materials.count(card.integer("MID")) == 1, "part has no material");
            parts.push_back({card.integer("PID"), rigid.count(card.integer("MID")) == 1});
        }
        Expect(parts.size() >= 3, "parts are not blank, die and punch");
    }

    bool IsPart(int i_id) const
    {
        return std::any_of(parts.begin(), parts.end(), [i_id](Part const & part) { return part.id == i_id; });
    }

    void ReadMeshes()
    {
        for (auto const * block : deck.all("NODE"))
            for (auto const & card : block->cards)
                Expect(nodes
                           .emplace(card.integer("NID"),
                                    std::array<double, 3>{card.real("X"), card.real("Y"), card.real("Z")})
                           .second,
                       "node " + card.text("NID") + " comes twice");
        std::set<int> labels;
        for (auto const * block : deck.all("ELEMENT_SHELL"))
            for (auto const & card : block->cards)
            {
                DeckShell shell{card.integer("EID"), card.integer("PID"), {}};
                Expect(labels.insert(shell.label).second, "shell " + card.text("EID") + " comes twice");
                Expect(IsPart(shell.part), "shell " + card.text("EID") + " has no part");
                constexpr char const * kCorners[] = {"N1", "N2", "N3", "N4"};
                for (std::size_t k = 0; k < 4; ++k)
                {
                    shell.nodes[k] = card.integer(kCorners[k]);
                    if (k == 3 && (shell.nodes[3] == 0 || shell.nodes[3] == shell.nodes[0]))
                        shell.nodes[3] = shell.nodes[2];
                    Expect(nodes.count(shell.nodes[k]) == 1, "shell " + card.text("EID") + " lacks a node");
                }
                shells.push_back(shell);
            }
        for (Part const & part : parts)
            Expect(std::any_of(shells.begin(), shells.end(), [&](DeckShell const & s) { return s.part == part.id; }),
                   "part " + std::to_string(part.id) + " has no shells");
    }

    void ReadOutput()
    {
        auto const & extent = deck.one("DATABASE_EXTENT_BINARY");
        pointsOfOutput = extent.card(0).integer("MAXINT", 3);
        Expect(pointsOfOutput >= 3, "MAXINT is below 3");
        Expect(extent.card(0).integer("STRFLG") == 1, "STRFLG is not 1: no strains would be written");
        Expect(extent.card(1).integer("IEVERP") == 1, "IEVERP is not 1");
        Expect(extent.card(1).integer("CMPFLG") == 0, "CMPFLG asks for other axes than the global ones");
        Expect(extent.card(1).integer("DCOMP") == 2, "DCOMP is not 2");
        auto const & plot = deck.one("DATABASE_BINARY_D3PLOT");
        Expect(plot.card(1).integer("IOOPT") == 3, "IOOPT is not 3");
        Curve const curve = deck.curve(plot.card(0).integer("LCDT"));
        Ascends(curve, "curve of output times");
        Expect(curve.front().first == 0.0 && curve.back().first < end, "output times do not lie in the run");
        for (auto const & [time, count] : curve)
            outputTimes.push_back(time);
        outputTimes.push_back(end);
    }

    void ReadMotion()
    {
        auto const & motion = deck.one("BOUNDARY_PRESCRIBED_MOTION_RIGID_LOCAL").card(0);
        Expect(IsPart(motion.integer("TYPEID")), "moved part is not there");
        Expect(motion.integer("DOF") == 3 && motion.integer("VAD") == 0, "punch is not moved along z by its velocity");
        velocity = deck.curve(motion.integer("LCID"));
        Ascends(velocity, "velocity of the punch");
        Expect(velocity.front().second == 0.0 && velocity.back().second == 0.0, "punch does not start and end at rest");
        Expect(std::fabs(velocity.back().first - end) < 1e-3 * end, "punch does not stop at the end");
        for (auto const * block : deck.all("LOAD_RIGID_BODY"))
            Expect(deck.curve(block->card(0).integer("LCID")).back().second > 0.0, "binder has no force");
    }

    void CheckContacts()
    {
        int count = 0;
        for (auto const & block : deck.blocks())
            if (block.keyword.rfind("CONTACT_FORMING", 0) == 0)
            {
                ++count;
                for (char const * side : {"SSID", "MSID"})
                    Expect(IsPart(block.card(0).integer(side)), "contact has no part " + block.card(0).text(side));
                Expect(block.card(0).integer("SSTYP") == 3 && block.card(0).integer("MSTYP") == 3,
                       "contact is not between parts");
                Expect(block.card(1).real("FS") >= 0.0, "friction is negative");
            }
        Expect(count == static_cast<int>(parts.size()) - 1, "tools are not each in a contact with the blank");
    }
};
} // namespace standin

#endif
