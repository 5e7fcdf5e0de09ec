// ZoneLimits.h: the limits of thinning, shear and wrinkling that zones are judged by, as the configuration file has
// them.

#ifndef ZONELIMITS_H
#define ZONELIMITS_H

class FormingLimit;

class ZoneLimits
{
public:
    // From the configuration file in force; a limit that is missing there is 0, its test off. False without a path.
    bool Read();

    // The zones of one point; strains in engineering percent.
    void Classify(FormingLimit const & i_limit, double i_major, double i_minor, int & o_forming, int & o_safety) const;

private:
    double mThinningLimit = 0.0;
    double mThinningMargin = 0.0;
    double mShearLimit = 0.0;
    double mShearMargin = 0.0;
    double mWrinkleLimit = 0.0;
};

#endif
