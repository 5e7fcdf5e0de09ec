// ADTree.cpp: the alternating digital tree.
//
// Both walks take turns through the coordinates by depth and halve the region at each link, so that they agree on every
// region to the last bit.

#include "ADTree.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <vector>

static_assert(sizeof(void *) != 8 || sizeof(ADTree) == 112, "a tree is its count, dimension, region and root");
static_assert(sizeof(void *) != 8 || sizeof(ADTreeLink) == 24, "a link is its id and its two branches");

namespace
{
constexpr int kMaxDimension = 6;
constexpr std::size_t kUsualDepth = 64; // more frames than this seldom wait at a time

int dimensionOf(int i_dimension)
{
    return std::clamp(i_dimension, 0, kMaxDimension);
}

// The rest of the six doubles is zero: a query of more dimensions than the tree reads them.
void copyCorner(double const * i_corner, int i_dimension, double (&o_corner)[kMaxDimension])
{
    std::fill(std::begin(o_corner), std::end(o_corner), 0.0);
    std::copy_n(i_corner, i_dimension, o_corner);
}

double middle(double const * i_lower, double const * i_upper, int i_coordinate)
{
    return (i_upper[i_coordinate] + i_lower[i_coordinate]) * 0.5;
}

// A link that waits for its visit, with its region.
struct Frame
{
    ADTreeLink const * link;
    int coordinate; // in which it splits
    double lower[kMaxDimension];
    double upper[kMaxDimension];
};
} // namespace

ADTreeQuery::ADTreeQuery(int i_dimension, double const * const i_lower, double const * const i_upper)
    : mDimension(dimensionOf(i_dimension))
{
    copyCorner(i_lower, mDimension, mLower);
    copyCorner(i_upper, mDimension, mUpper);
}

ADTreeQuery::~ADTreeQuery() = default;

void ADTreeQuery::visit(int i_id)
{
    std::fprintf(stderr, "%d\n", i_id);
}

ADTree::ADTree(double const * const i_lower, double const * const i_upper, int i_dimension)
    : mCount(0), mDimension(dimensionOf(i_dimension)), mRoot(nullptr)
{
    copyCorner(i_lower, mDimension, mLower);
    copyCorner(i_upper, mDimension, mUpper);
}

// A left branch is turned up until there is none, then the link goes: no stack, whatever the depth.
ADTree::~ADTree()
{
    while (mRoot)
    {
        ADTreeLink * const link = mRoot;
        if (ADTreeLink * const left = link->getLeft())
        {
            link->setLeft(left->getRight());
            left->setRight(link);
            mRoot = left;
            continue;
        }
        mRoot = link->getRight();
        delete link;
    }
    mDimension = 0;
}

void ADTree::insert(double const * const i_key, int i_id)
{
    if (mDimension == 0)
        return;
    std::unique_ptr<ADTreeLink> link = std::make_unique<ADTreeLink>(i_id);
    ++mCount;
    if (!mRoot)
    {
        mRoot = link.release();
        return;
    }
    double lower[kMaxDimension];
    double upper[kMaxDimension];
    copyCorner(mLower, mDimension, lower);
    copyCorner(mUpper, mDimension, upper);
    ADTreeLink * at = mRoot;
    for (int c = 0;; c = c + 1 == mDimension ? 0 : c + 1)
    {
        double const mid = middle(lower, upper, c);
        bool const right = i_key[c] >= mid;
        ADTreeLink * const next = right ? at->getRight() : at->getLeft();
        if (!next)
        {
            if (right)
                at->setRight(link.release());
            else
                at->setLeft(link.release());
            return;
        }
        (right ? lower : upper)[c] = mid;
        at = next;
    }
}

// Of a link's branches the right one is next, and so it takes over the frame; only the left one has to wait, if both
// touch the query's box. They differ from the link's own region in one bound alone, which alone is compared.
void ADTree::query(ADTreeQuery & q)
{
    if (!mRoot)
        return;
    Frame frame;
    frame.link = mRoot;
    frame.coordinate = 0;
    copyCorner(mLower, mDimension, frame.lower);
    copyCorner(mUpper, mDimension, frame.upper);
    if (!q.overlap(frame.lower, frame.upper))
        return;
    std::vector<Frame> waiting;
    waiting.reserve(kUsualDepth);
    for (;;)
    {
        q.visit(frame.link->getId());

        int const c = frame.coordinate;
        bool const tested = c < q.mDimension;
        double const mid = middle(frame.lower, frame.upper, c);
        ADTreeLink const * const left = tested && mid < q.mLower[c] ? nullptr : frame.link->getLeft();
        ADTreeLink const * const right = tested && q.mUpper[c] < mid ? nullptr : frame.link->getRight();
        frame.coordinate = c + 1 == mDimension ? 0 : c + 1;
        if (right)
        {
            if (left)
            {
                waiting.push_back(frame);
                waiting.back().link = left;
                waiting.back().upper[c] = mid;
            }
            frame.link = right;
            frame.lower[c] = mid;
        }
        else if (left)
        {
            frame.link = left;
            frame.upper[c] = mid;
        }
        else if (!waiting.empty())
        {
            frame = waiting.back();
            waiting.pop_back();
        }
        else
            return;
    }
}

void ADTree::getRegion(double * const o_lower, double * const o_upper) const
{
    std::copy_n(mLower, mDimension, o_lower);
    std::copy_n(mUpper, mDimension, o_upper);
}
