// ADTree.h: an alternating digital tree over points of up to six dimensions, and the query that walks it.
//
// A link splits its box in the middle of one coordinate, the coordinates taking turns by depth. The way down is the
// key: keys are neither stored nor compared with each other, so the order of insertion decides the shape and equal keys
// are welcome. A box in n dimensions becomes a point in 2n: its low and its high corner.
//
// A query visits the links whose region it touches: candidates, since a link's region is wider than its key.
//
// Nothing is reported. Dimensions outside 0 .. 6 count as the nearer of the two; a tree of dimension 0 takes no link.
// Bonet and Peraire, Int. J. Numer. Methods Eng. 31 (1991), 1-17.

#ifndef ADTREE_H
#define ADTREE_H

#include "ExportedByVOZDravo.h"

class ExportedByVOZDravo ADTreeLink
{
public:
    explicit ADTreeLink(int i_id = 0) : mId(i_id), mLeft(nullptr), mRight(nullptr) {}

    int getId() const { return mId; }
    void setId(int i_id) { mId = i_id; }
    ADTreeLink * getLeft() const { return mLeft; } // null for none
    void setLeft(ADTreeLink * i_link) { mLeft = i_link; }
    ADTreeLink * getRight() const { return mRight; }
    void setRight(ADTreeLink * i_link) { mRight = i_link; }

private:
    int mId;
    ADTreeLink * mLeft;
    ADTreeLink * mRight;
};

// A box, and what is done with each candidate.
class ExportedByVOZDravo ADTreeQuery
{
public:
    ADTreeQuery(int i_dimension, double const * const i_lower, double const * const i_upper); // copies both corners
    virtual ~ADTreeQuery();
    virtual void visit(int i_id); // prints the id on a line of its own to standard error

    // True if the box given and the query's touch or overlap in every dimension of the query.
    bool overlap(double const * const i_lower, double const * const i_upper) const
    {
        bool apart = false; // to the end: in which dimension they part cannot be foretold
        for (int i = 0; i < mDimension; ++i)
            apart = apart | (i_upper[i] < mLower[i]) | (mUpper[i] < i_lower[i]);
        return !apart;
    }

private:
    friend class ADTree;

    int mDimension;
    double mLower[6];
    double mUpper[6];
};

class ExportedByVOZDravo ADTree
{
public:
    ADTree(double const * const i_lower, double const * const i_upper, int i_dimension); // empty, over the region given
    ~ADTree();
    ADTree(ADTree const &) = delete; // it owns its links
    ADTree & operator=(ADTree const &) = delete;

    void insert(double const * const i_key, int i_id); // a key of as many doubles as there are dimensions
    // q.visit for each candidate: a link, then its right subtree, then its left one. The tree must not be empty;
    // where it is, nothing is visited. Do not insert from within a visit.
    void query(ADTreeQuery & q);
    void getRegion(double * const o_lower,
                   double * const o_upper) const; // as many doubles each as there are dimensions

private:
    int mCount;
    int mDimension;
    double mLower[6];
    double mUpper[6];
    ADTreeLink * mRoot;
};

#endif
