// Vec.h: a 3-vector of doubles with shared counted storage and a view mode over foreign rows.
//
// Two pointers make three modes:
//
//     counted         mCount at a count of 1 or more; the block is freed when the count falls to 0
//     view            mCount null; memory of someone else: writes go straight through
//     unowned block   mCount null; a block of its own that nothing ever frees (three-double and float constructors)
//
// A copy of anything is counted; only counted copies share, and a write detaches first. Nothing fails and nothing is
// checked. Not safe across threads: the count is a plain integer.

#ifndef VEC_H
#define VEC_H

#include "ExportedByVOZDravo.h"

class ExportedByVOZDravo Vec
{
public:
    Vec();                                                   // counted (0, 0, 0)
    Vec(double * i_row) : mValues(i_row), mCount(nullptr) {} // view of the three doubles at i_row
    Vec(double const * i_row);                               // counted private copy
    Vec(float * i_row);                                      // unowned block: leaks by design
    Vec(double x, double y, double z);                       // unowned block: leaks by design
    Vec(Vec const & i_other);                                // shares a counted block, copies anything else
    ~Vec()
    {
        if (mCount)
            release();
    }

    // Writes through a view and never re-seats it. Assigning a vector of count 1 to itself is outside the contract.
    Vec & operator=(Vec const & i_other);
    Vec & operator=(double * i_row);       // becomes a view
    Vec & operator=(double const * i_row); // becomes a private counted copy

    void zero(); // a view is zeroed in place, a counted vector detaches
    Vec & operator+=(Vec const & i_other);
    Vec & operator-=(Vec const & i_other);
    Vec & operator*=(double i_factor);
    Vec & operator/=(double i_divisor);
    double & operator[](int i); // detaches; no bounds check
    double operator[](int i) const { return mValues[i]; }

    double dot(Vec const & i_other) const;
    double length() const;
    double distance(Vec const & i_other) const;
    double area(Vec const & b, Vec const & c) const; // of the triangle *this, b, c
    Vec cross(Vec const & i_other) const;
    void unit(); // divides in place by the length; a zero vector becomes NaN

    Vec operator-() const;
    Vec operator+(Vec const & i_other) const;
    Vec operator-(Vec const & i_other) const;
    Vec operator*(double i_factor) const;
    Vec operator/(double i_divisor) const;
    bool operator==(Vec const & i_other) const; // exact
    bool operator!=(Vec const & i_other) const;

protected:
    void increment(); // count + 1 if there is a count
    void copy();      // always a new block with count 1; the old one is released
    void unique();    // copy() if there is a count and it is above 1

private:
    void release(); // drops the reference, if there is one

    double * mValues;
    int * mCount;
};

#endif
