// FormingChart.cpp: the forming limit diagram.

#include "FormingChart.h"

#include "Colour.h"
#include "FlatGeometry.h"
#include "OutputFile.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace voz::workbench
{
namespace
{

constexpr double kWidth = 900.0;
constexpr double kHeight = 560.0;
constexpr double kLeft = 70.0;
constexpr double kRight = 20.0;
constexpr double kTop = 20.0;
constexpr double kBottom = 60.0;
constexpr std::size_t kMostSinglePoints = 20000;
constexpr int kCurveSteps = 120;

class Chart
{
public:
    explicit Chart(Outcome const & i_outcome) : mOutcome(i_outcome) { findRanges(); }

    std::string Svg() const
    {
        std::string svg = "<svg viewBox=\"0 0 " + Fixed(kWidth, 0) + " " + Fixed(kHeight, 0) +
                          "\" role=\"img\" aria-label=\"Forming limit diagram\" font-family=\"sans-serif\" "
                          "font-size=\"13\">\n<clipPath id=\"plot\"><rect x=\"" +
                          Fixed(kLeft, 0) + "\" y=\"" + Fixed(kTop, 0) + "\" width=\"" +
                          Fixed(kWidth - kLeft - kRight, 0) + "\" height=\"" + Fixed(kHeight - kTop - kBottom, 0) +
                          "\"/></clipPath>\n";
        svg += "<g clip-path=\"url(#plot)\">\n" + zones() + points() + curves() + "</g>\n";
        return svg + axes() + legend() + "</svg>\n";
    }

private:
    // Whole tens around the points and the curve's foot.
    void findRanges()
    {
        double const foot = mOutcome.limit.fldZero();
        for (ElementOutcome const & element : mOutcome.elements)
        {
            mMinor.first = std::min(mMinor.first, std::max(element.minor, -100.0));
            mMinor.second = std::max(mMinor.second, std::min(element.minor, 300.0));
            mMajor.first = std::min(mMajor.first, std::max(element.major, -100.0));
            mMajor.second = std::max(mMajor.second, std::min(element.major, 500.0));
        }
        mMajor.second = std::max(mMajor.second, foot + 15.0);
        auto const down = [](double v) { return 10.0 * std::floor(v / 10.0); };
        auto const up = [](double v) { return 10.0 * std::ceil(v / 10.0); };
        mMinor = {down(mMinor.first), up(mMinor.second)};
        mMajor = {down(mMajor.first), up(mMajor.second)};
    }

    double x(double minor) const
    {
        return kLeft + (kWidth - kLeft - kRight) * (minor - mMinor.first) / (mMinor.second - mMinor.first);
    }
    double y(double major) const
    {
        return kHeight - kBottom - (kHeight - kTop - kBottom) * (major - mMajor.first) / (mMajor.second - mMajor.first);
    }
    std::string at(double minor, double major) const { return Fixed(x(minor), 1) + " " + Fixed(y(major), 1); }

    template <class Curve>
    std::string curvePoints(Curve curve, bool backwards) const
    {
        std::string path;
        for (int i = 0; i <= kCurveSteps; ++i)
        {
            double const share = static_cast<double>(backwards ? kCurveSteps - i : i) / kCurveSteps;
            double const minor = mMinor.first + share * (mMinor.second - mMinor.first);
            path += (path.empty() ? "" : " L ") + at(minor, curve(minor));
        }
        return path;
    }

    std::string zones() const
    {
        auto const limit = [this](double minor) { return mOutcome.limit.limitCurveMajor(minor); };
        auto const safe = [this](double minor) { return mOutcome.limit.safetyCurveMajor(minor); };
        auto const top = [this](double) { return mMajor.second; };
        auto const bottom = [this](double) { return mMajor.first; };
        auto const band = [&](auto low, auto high, int code)
        {
            return "<path d=\"M " + curvePoints(low, false) + " L " + curvePoints(high, true) + " Z\" fill=\"" +
                   Hex(SafetyColour(code)) + "\" fill-opacity=\"0.16\"/>\n";
        };
        return band(limit, top, 0) + band(safe, limit, 1) + band(bottom, safe, 2);
    }

    std::string curves() const
    {
        auto const limit = [this](double minor) { return mOutcome.limit.limitCurveMajor(minor); };
        auto const safe = [this](double minor) { return mOutcome.limit.safetyCurveMajor(minor); };
        return "<path d=\"M " + curvePoints(limit, false) +
               "\" fill=\"none\" stroke=\"#000\" stroke-width=\"2\"/>\n<path d=\"M " + curvePoints(safe, false) +
               "\" fill=\"none\" stroke=\"#000\" stroke-width=\"1.5\" stroke-dasharray=\"7 4\"/>\n";
    }

    // One path a zone: a point is a line of no length with round ends.
    std::string points() const
    {
        bool const binned = mOutcome.elements.size() > kMostSinglePoints;
        std::string svg;
        for (int code = -1; code <= 4; ++code)
        {
            std::string path;
            std::set<std::pair<int, int>> seen;
            for (ElementOutcome const & element : mOutcome.elements)
            {
                if (element.safety != code || !std::isfinite(element.minor + element.major))
                    continue;
                if (binned &&
                    !seen.emplace(static_cast<int>(2.0 * x(element.minor)), static_cast<int>(2.0 * y(element.major)))
                         .second)
                    continue;
                path += "M" + at(element.minor, element.major) + "h0";
            }
            if (!path.empty())
                svg += "<path d=\"" + path +
                       "\" stroke=\"#333\" stroke-width=\"4.4\" stroke-linecap=\"round\"/>\n<path d=\"" + path +
                       "\" stroke=\"" + Hex(SafetyColour(code)) +
                       "\" stroke-width=\"3.2\" stroke-linecap=\"round\"/>\n";
        }
        return svg;
    }

    static double tickStep(double span) { return span > 160.0 ? 50.0 : span > 80.0 ? 20.0 : 10.0; }

    std::string axes() const
    {
        std::string svg = "<g stroke=\"#000\" stroke-width=\"1\">\n<path fill=\"none\" d=\"M " +
                          at(mMinor.first, mMajor.second) + " L " + at(mMinor.first, mMajor.first) + " L " +
                          at(mMinor.second, mMajor.first) + "\"/>\n";
        if (mMinor.first < 0.0 && mMinor.second > 0.0)
            svg += "<path stroke=\"#999\" d=\"M " + at(0.0, mMajor.first) + " L " + at(0.0, mMajor.second) + "\"/>\n";
        svg += "</g>\n<g fill=\"#000\">\n";
        double const stepX = tickStep(mMinor.second - mMinor.first);
        for (double tick = stepX * std::ceil(mMinor.first / stepX); tick <= mMinor.second; tick += stepX)
            svg += label(x(tick), kHeight - kBottom + 18.0, "middle", Fixed(tick, 0));
        double const stepY = tickStep(mMajor.second - mMajor.first);
        for (double tick = stepY * std::ceil(mMajor.first / stepY); tick <= mMajor.second; tick += stepY)
            svg += label(kLeft - 8.0, y(tick) + 4.0, "end", Fixed(tick, 0));
        svg += label(0.5 * (kLeft + kWidth), kHeight - 18.0, "middle", "minor strain, engineering %");
        double const middle = 0.5 * (kTop + kHeight - kBottom);
        return svg + "<text transform=\"rotate(-90 20 " + Fixed(middle, 0) + ")\" x=\"20\" y=\"" + Fixed(middle, 0) +
               "\" text-anchor=\"middle\">major strain, engineering %</text>\n</g>\n";
    }

    static std::string label(double px, double py, char const * anchor, std::string const & text)
    {
        return "<text x=\"" + Fixed(px, 1) + "\" y=\"" + Fixed(py, 1) + "\" text-anchor=\"" + anchor + "\">" + text +
               "</text>\n";
    }

    std::string legend() const
    {
        double const px = kWidth - kRight - 190.0;
        double py = kHeight - kBottom - 118.0;
        std::string svg = "<g>\n<rect x=\"" + Fixed(px - 10.0, 0) + "\" y=\"" + Fixed(py - 18.0, 0) +
                          "\" width=\"200\" height=\"134\" fill=\"#fff\" fill-opacity=\"0.85\" stroke=\"#999\"/>\n";
        for (int code = 0; code <= 4; ++code, py += 18.0)
            svg += "<circle cx=\"" + Fixed(px + 8.0, 0) + "\" cy=\"" + Fixed(py - 4.0, 0) + "\" r=\"5\" fill=\"" +
                   Hex(SafetyColour(code)) + "\" stroke=\"#333\"/>\n" + label(px + 22.0, py, "start", SafetyName(code));
        svg += "<path d=\"M " + Fixed(px, 0) + " " + Fixed(py - 4.0, 0) +
               " h16\" stroke=\"#000\" stroke-width=\"2\"/>\n" + label(px + 22.0, py, "start", "forming limit");
        py += 18.0;
        return svg + "<path d=\"M " + Fixed(px, 0) + " " + Fixed(py - 4.0, 0) +
               " h16\" stroke=\"#000\" stroke-width=\"1.5\" stroke-dasharray=\"7 4\"/>\n" +
               label(px + 22.0, py, "start", "limit less safety margin") + "</g>\n";
    }

    Outcome const & mOutcome;
    std::pair<double, double> mMinor{-20.0, 20.0};
    std::pair<double, double> mMajor{0.0, 20.0};
};

} // namespace

std::string FormingChart(Outcome const & i_outcome)
{
    return Chart(i_outcome).Svg();
}

} // namespace voz::workbench
