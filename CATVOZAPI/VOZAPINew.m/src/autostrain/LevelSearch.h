// LevelSearch.h: the levels of restraint at which one or two strains come to given values.
//
// Newton's method with the slopes that the caller measures. A step at most doubles a level (one that is below the
// scale it may bring there) and halves it, or goes to zero where it would fall below. A single strain grows with its
// level: what was too little and what was too much close in on the answer, and a step that leaves them halves the gap.
// Two strains: a level that would fall below zero stays there while the other one does what it can; a step that makes
// things worse is halved. Knows no mesh.

#ifndef LEVELSEARCH_H
#define LEVELSEARCH_H

#include <array>
#include <string>

namespace voz::autostrain
{

using Pair = std::array<double, 2>; // the second entry is not used where there is one level

struct Sample
{
    Pair level{};                // N/m
    Pair value{};                // strains
    std::array<Pair, 2> slope{}; // of value i by level j
    bool hasSlope = false;
    bool torn = false; // the thinning passes what a sheet can bear
};

class LevelSearch
{
public:
    // i_scale: a level by which a search may leave zero, or next to nothing, N/m.
    LevelSearch(int i_count, Pair i_wanted, double i_scale);

    // Takes what a level gave. False: the search is over; else nextLevel() is to be tried.
    bool accept(Sample const & i_sample);
    // The level that was asked for has no equilibrium.
    bool reject();

    Pair const & nextLevel() const { return m_next; }
    Sample const & best() const { return m_best; } // of those accepted
    bool met() const { return m_met; }
    std::string const & reason() const { return m_reason; } // why the wanted values were not met
    int rounds() const { return m_rounds; }                 // levels tried after the first

private:
    double error(Sample const & i_sample, int i) const;
    double size(Sample const & i_sample) const;  // of the greater error
    double merit(Sample const & i_sample) const; // by which samples are compared
    bool end(std::string i_reason);
    bool tryLevel(Pair const & i_level);
    bool stepOne(Sample const & i_sample);
    bool stepTwo(Sample const & i_sample);
    double bounded(double i_from, double i_to) const;

    int m_count;
    Pair m_wanted;
    double m_scale;
    double m_low = -1.0, m_high = -1.0; // of a single level: too little, too much; -1: not known
    Sample m_best, m_last;
    bool m_any = false, m_met = false;
    Pair m_next{};
    int m_rounds = 0;
    std::string m_reason;
};

} // namespace voz::autostrain

#endif
