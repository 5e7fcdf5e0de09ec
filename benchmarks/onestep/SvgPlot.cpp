// SvgPlot.cpp: axes, ticks, curves, legend.

#include "SvgPlot.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>

namespace plot
{

namespace
{

constexpr double kLeft = 70.0, kRight = 470.0, kTop = 40.0, kBottom = 350.0;
constexpr char const * kColours[] = {"#0072b2", "#d55e00", "#009e73", "#cc79a7",
                                     "#e69f00", "#56b4e9", "#000000", "#7f7f7f"};

std::string text(char const * format, ...)
{
    char buffer[512];
    va_list values;
    va_start(values, format);
    std::vsnprintf(buffer, sizeof buffer, format, values);
    va_end(values);
    return buffer;
}

struct Scale // values to picture coordinates
{
    double low, high, from, to;
    bool logarithmic;

    double at(double value) const
    {
        double const v = logarithmic ? std::log10(value) : value;
        return from + (to - from) * (v - low) / (high - low);
    }
};

Scale scaleOf(std::vector<Series> const & series, std::size_t axis, double from, double to, bool logarithmic)
{
    double low = 1e300, high = -1e300;
    for (Series const & one : series)
        for (auto const & point : one.points)
        {
            double const v = logarithmic ? std::log10(point[axis]) : point[axis];
            low = std::min(low, v);
            high = std::max(high, v);
        }
    double const margin = 0.04 * std::max(high - low, 1e-12);
    return {low - margin, high + margin, from, to, logarithmic};
}

std::vector<double> ticksOf(Scale const & scale)
{
    std::vector<double> ticks;
    if (scale.logarithmic)
    {
        for (int decade = static_cast<int>(std::floor(scale.low)); decade <= scale.high; ++decade)
            for (double const digit : {1.0, 2.0, 5.0})
                if (double const v = std::log10(digit) + decade; v >= scale.low && v <= scale.high)
                    ticks.push_back(digit * std::pow(10.0, decade));
        return ticks;
    }
    double const rough = (scale.high - scale.low) / 6.0, power = std::pow(10.0, std::floor(std::log10(rough)));
    double const step = power * (rough / power < 2.0 ? 2.0 : rough / power < 5.0 ? 5.0 : 10.0);
    for (int i = static_cast<int>(std::ceil(scale.low / step)); i * step <= scale.high; ++i)
        ticks.push_back(i * step);
    return ticks;
}

std::string markOf(std::size_t i, double x, double y, char const * colour)
{
    if (i % 2 == 0)
        return text("<circle cx=\"%.2f\" cy=\"%.2f\" r=\"3\" fill=\"%s\"/>\n", x, y, colour);
    return text("<rect x=\"%.2f\" y=\"%.2f\" width=\"5\" height=\"5\" fill=\"%s\"/>\n", x - 2.5, y - 2.5, colour);
}

std::string frameOf(Axes const & axes, Scale const & x, Scale const & y)
{
    std::string out = text("<rect x=\"%g\" y=\"%g\" width=\"%g\" height=\"%g\" fill=\"none\" stroke=\"#444\"/>\n",
                           kLeft, kTop, kRight - kLeft, kBottom - kTop);
    for (double const tick : ticksOf(x))
        out += text(
            "<path d=\"M%.2f %gV%g\" stroke=\"#ddd\"/><text x=\"%.2f\" y=\"%g\" text-anchor=\"middle\">%g</text>\n",
            x.at(tick), kBottom, kTop, x.at(tick), kBottom + 16.0, std::fabs(tick) < 1e-12 ? 0.0 : tick);
    for (double const tick : ticksOf(y))
        out +=
            text("<path d=\"M%g %.2fH%g\" stroke=\"#ddd\"/><text x=\"%g\" y=\"%.2f\" text-anchor=\"end\">%g</text>\n",
                 kLeft, y.at(tick), kRight, kLeft - 6.0, y.at(tick) + 4.0, std::fabs(tick) < 1e-12 ? 0.0 : tick);
    out += text("<text x=\"%g\" y=\"24\" font-weight=\"bold\">", kLeft) + axes.title + "</text>\n";
    out += text("<text x=\"%g\" y=\"%g\" text-anchor=\"middle\">", 0.5 * (kLeft + kRight), kBottom + 36.0) + axes.x +
           "</text>\n";
    out += text("<text transform=\"translate(18 %g) rotate(-90)\" text-anchor=\"middle\">", 0.5 * (kTop + kBottom)) +
           axes.y + "</text>\n";
    return out;
}

} // namespace

std::string svgOf(Axes const & axes, std::vector<Series> const & series)
{
    Scale const x = scaleOf(series, 0, kLeft, kRight, axes.logarithmic);
    Scale const y = scaleOf(series, 1, kBottom, kTop, axes.logarithmic);
    std::string out = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 640 400\" width=\"640\" height=\"400\" "
                      "font-family=\"sans-serif\" font-size=\"12\" role=\"img\">\n<title>" +
                      axes.title + "</title>\n<rect width=\"640\" height=\"400\" fill=\"#fff\"/>\n" +
                      frameOf(axes, x, y);
    for (std::size_t i = 0; i < series.size(); ++i)
    {
        char const * const colour = kColours[i % std::size(kColours)];
        std::string path;
        for (auto const & point : series[i].points)
            path += text("%s%.2f %.2f", path.empty() ? "M" : "L", x.at(point[0]), y.at(point[1]));
        if (series[i].line)
            out += "<path d=\"" + path + "\" fill=\"none\" stroke=\"" + colour + "\" stroke-width=\"1.5\"" +
                   (series[i].dashed ? " stroke-dasharray=\"5 4\"" : "") + "/>\n";
        for (auto const & point : series[i].points)
            if (series[i].marks)
                out += markOf(i, x.at(point[0]), y.at(point[1]), colour);
        double const row = kTop + 10.0 + 18.0 * static_cast<double>(i);
        if (series[i].line)
            out += text("<path d=\"M480 %gH500\" stroke=\"%s\" stroke-width=\"1.5\"%s/>\n", row, colour,
                        series[i].dashed ? " stroke-dasharray=\"5 4\"" : "");
        if (series[i].marks)
            out += markOf(i, 490.0, row, colour);
        out += text("<text x=\"506\" y=\"%g\">", row + 4.0) + series[i].name + "</text>\n";
    }
    return out + "</svg>\n";
}

} // namespace plot
