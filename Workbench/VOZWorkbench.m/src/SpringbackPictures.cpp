// SpringbackPictures.cpp: the deviation of the sprung shape from the part, drawn.

#include "SpringbackPictures.h"

#include "FieldPictures.h"
#include "OutputFile.h"
#include "PictureParts.h"

#include <algorithm>
#include <cmath>

namespace voz::workbench
{

namespace
{
constexpr double kMargin = 50.0; // of the section in its picture, units of the svg
constexpr double kLegend = 70.0; // above it

// A piece of the section: both ends on the part and on the sprung shape, in the plane.
struct Cut
{
    Point2 part[2];
    Point2 sprung[2];
    bool isTrimmed;
};

class SectionCutter
{
public:
    SectionCutter(Outcome const & i_outcome)
        : mSpringback(*i_outcome.springback), mNormal(mSpringback.section.normal), mPoint(mSpringback.section.point)
    {
        // Upward on the page is the stamping direction, or as much of it as lies in the plane.
        Point3 up{};
        for (int c = 0; c < 3; ++c)
            up[static_cast<std::size_t>(c)] = i_outcome.frame.axis(2, c);
        if (std::abs(Dot(up, mNormal)) > 0.9)
            for (int c = 0; c < 3; ++c)
                up[static_cast<std::size_t>(c)] = i_outcome.frame.axis(1, c);
        double const along = Dot(up, mNormal);
        for (std::size_t c = 0; c < 3; ++c)
            up[c] -= along * mNormal[c];
        double const length = std::sqrt(Dot(up, up));
        for (std::size_t c = 0; c < 3; ++c)
            mUp[c] = up[c] / length;
        // Seen along the normal.
        mAcross = {mNormal[1] * mUp[2] - mNormal[2] * mUp[1], mNormal[2] * mUp[0] - mNormal[0] * mUp[2],
                   mNormal[0] * mUp[1] - mNormal[1] * mUp[0]};
    }

    std::vector<Cut> Cuts() const
    {
        std::vector<Cut> cuts;
        VOZCatMesh const & mesh = mSpringback.part;
        for (int e = 1; e <= mesh.numElem(); ++e)
        {
            int const n[4] = {mesh.ElementValue(e, 0), mesh.ElementValue(e, 1), mesh.ElementValue(e, 2),
                              mesh.ElementValue(e, 3)};
            bool const isTrimmed = mSpringback.trimmed[static_cast<std::size_t>(e) - 1] != 0;
            AddTriangle(n[0], n[1], n[2], isTrimmed, cuts);
            if (n[3] != n[0])
                AddTriangle(n[0], n[2], n[3], isTrimmed, cuts);
        }
        return cuts;
    }

private:
    static double Dot(Point3 const & a, Point3 const & b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

    Point3 Node(int n) const
    {
        double const * const p = mSpringback.part.GetNodeData()[n];
        return {p[0], p[1], p[2]};
    }

    // Signed distance from the plane; a node on it counts as above, so that no side is cut twice.
    double Height(int n) const
    {
        Point3 const p = Node(n);
        return Dot({p[0] - mPoint[0], p[1] - mPoint[1], p[2] - mPoint[2]}, mNormal);
    }

    Point2 InPlane(Point3 const & p) const { return {Dot(p, mAcross), Dot(p, mUp)}; }

    void AddTriangle(int a, int b, int c, bool i_isTrimmed, std::vector<Cut> & io_cuts) const
    {
        int const corners[3] = {a, b, c};
        Cut cut{{}, {}, i_isTrimmed};
        int ends = 0;
        for (int k = 0; k < 3 && ends < 2; ++k)
        {
            int const from = corners[k];
            int const to = corners[(k + 1) % 3];
            double const hf = Height(from);
            double const ht = Height(to);
            if ((hf >= 0.0) == (ht >= 0.0))
                continue;
            double const share = hf / (hf - ht);
            Point3 part{};
            Point3 sprung{};
            for (std::size_t i = 0; i < 3; ++i)
            {
                part[i] = Node(from)[i] + share * (Node(to)[i] - Node(from)[i]);
                double const f = mSpringback.Shown()[static_cast<std::size_t>(from) - 1][i];
                double const t = mSpringback.Shown()[static_cast<std::size_t>(to) - 1][i];
                sprung[i] = part[i] + mSpringback.exaggeration * (f + share * (t - f));
            }
            cut.part[ends] = InPlane(part);
            cut.sprung[ends++] = InPlane(sprung);
        }
        if (ends == 2)
            io_cuts.push_back(cut);
    }

    SpringbackOutcome const & mSpringback;
    Point3 mNormal;
    Point3 mPoint;
    Point3 mUp{};
    Point3 mAcross{};
};

// Millimetres in the plane to units of the svg.
class Page
{
public:
    Page(std::vector<Cut> const & i_cuts)
    {
        for (Cut const & cut : i_cuts)
            for (Point2 const & p : {cut.part[0], cut.part[1], cut.sprung[0], cut.sprung[1]})
                for (std::size_t i = 0; i < 2; ++i)
                {
                    mLow[i] = std::min(mLow[i], p[i]);
                    mHigh[i] = std::max(mHigh[i], p[i]);
                }
        double const width = std::max(mHigh[0] - mLow[0], 1e-9);
        double const height = std::max(mHigh[1] - mLow[1], 1e-9);
        mScale = std::min((kPictureSize.width - 2.0 * kMargin) / width,
                          (kPictureSize.height - kLegend - 2.0 * kMargin) / height);
        mHeight = kLegend + 2.0 * kMargin + mScale * height;
        mLeft = 0.5 * (kPictureSize.width - mScale * width);
    }
    double Height() const { return mHeight; }
    double Scale() const { return mScale; }
    std::string Place(Point2 const & p) const
    {
        return Fixed(mLeft + mScale * (p[0] - mLow[0]), 2) + " " +
               Fixed(kLegend + kMargin + mScale * (mHigh[1] - p[1]), 2);
    }

private:
    Point2 mLow{INFINITY, INFINITY};
    Point2 mHigh{-INFINITY, -INFINITY};
    double mScale = 1.0;
    double mHeight = 0.0;
    double mLeft = 0.0;
};

std::string Stroke(std::string const & i_path, char const * i_style)
{
    return i_path.empty()
               ? ""
               : "<path fill=\"none\" stroke-linecap=\"round\" " + std::string(i_style) + " d=\"" + i_path + "\"/>\n";
}

constexpr char const * kPartStyle = "stroke=\"#777\" stroke-width=\"5\"";
constexpr char const * kSprungStyle = "stroke=\"#0b4f9e\" stroke-width=\"2.5\"";
constexpr char const * kTrimmedStyle = "stroke=\"#bbb\" stroke-width=\"2\" stroke-dasharray=\"2 5\"";

std::string Legend(double i_exaggeration, bool i_hasTrimmed)
{
    std::string legend =
        Stroke("M20 24H60", kPartStyle) + PictureText(70, 29, "start", "part") + Stroke("M150 24H190", kSprungStyle) +
        PictureText(200, 29, "start", "after springback, deviations " + ExaggerationText(i_exaggeration));
    if (i_hasTrimmed)
        legend += Stroke("M20 52H60", kTrimmedStyle) + PictureText(70, 57, "start", "cut off before");
    return legend;
}

std::string ScaleBar(Page const & i_page)
{
    double length = 1.0; // mm: the largest of 1, 2, 5 times a power of ten that stays below a fifth of the picture
    for (double power = 1e-3; power < 1e5; power *= 10.0)
        for (double const first : {1.0, 2.0, 5.0})
            if (first * power * i_page.Scale() <= 0.2 * kPictureSize.width)
                length = first * power;
    double const right = kPictureSize.width - 20.0;
    double const left = right - length * i_page.Scale();
    return Stroke("M" + Fixed(left, 2) + " 24H" + Fixed(right, 2), "stroke=\"#000\" stroke-width=\"2\"") +
           PictureText(0.5 * (left + right), 44, "middle", Shortest(length) + " mm");
}
} // namespace

std::string ExaggerationText(double i_exaggeration)
{
    return i_exaggeration == 1.0 ? "drawn as large as they are"
                                 : "drawn " + Shortest(i_exaggeration) + " times as large";
}

std::string DrawDeviation(Outcome const & i_outcome)
{
    SpringbackOutcome const & springback = *i_outcome.springback;
    std::vector<Point3> const nodes = NodesInFrame(springback.part, i_outcome.frame);
    ValuePicture picture{springback.part,
                         nodes,
                         "deviation",
                         "mm",
                         "distance of the sprung shape from the part, on the formed part, mm",
                         {},
                         springback.trimmed,
                         3};
    for (int e = 1; e <= springback.part.numElem(); ++e)
    {
        int const corners = springback.part.isTriangle(e) != 0 ? 3 : 4;
        double sum = 0.0;
        for (int k = 0; k < corners; ++k)
        {
            Point3 const & d = springback.Shown()[static_cast<std::size_t>(springback.part.ElementValue(e, k)) - 1];
            sum += std::hypot(d[0], d[1], d[2]);
        }
        picture.values.push_back(sum / corners);
    }
    return DrawValues(picture);
}

std::string DrawSection(Outcome const & i_outcome)
{
    std::vector<Cut> const cuts = SectionCutter(i_outcome).Cuts();
    if (cuts.empty())
        return "";
    Page const page(cuts);
    std::string part;
    std::string sprung;
    std::string trimmed;
    for (Cut const & cut : cuts)
    {
        (cut.isTrimmed ? trimmed : part) += "M" + page.Place(cut.part[0]) + "L" + page.Place(cut.part[1]);
        if (!cut.isTrimmed)
            sprung += "M" + page.Place(cut.sprung[0]) + "L" + page.Place(cut.sprung[1]);
    }
    double const exaggeration = i_outcome.springback->exaggeration;
    return "<svg viewBox=\"0 0 " + std::to_string(kPictureSize.width) + " " + Fixed(page.Height(), 0) +
           "\" role=\"img\" aria-label=\"Section through the part and the sprung shape\" font-family=\"sans-serif\" "
           "font-size=\"14\">\n" +
           Stroke(part, kPartStyle) + Stroke(trimmed, kTrimmedStyle) + Stroke(sprung, kSprungStyle) +
           Legend(exaggeration, !trimmed.empty()) + ScaleBar(page) + "</svg>\n";
}

} // namespace voz::workbench
