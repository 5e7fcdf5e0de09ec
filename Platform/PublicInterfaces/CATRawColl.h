// CATRawColl.h: the host's collections of plain numbers, CATRawCollint and CATRawColldouble.
//
// Counted from 1. A position outside 1 .. Size() is a broken contract; where the reporter returns, reading gives 0 and
// writing goes nowhere. Value classes.

#ifndef CATRAWCOLL_H
#define CATRAWCOLL_H

#include "CATFatalError.h"

#include <algorithm>
#include <cstddef>
#include <vector>

template <class Value>
class CATRawColl
{
public:
    int Size() const { return static_cast<int>(mValues.size()); }

    Value & operator[](int i_position)
    {
        if (Holds(i_position))
            return mValues[static_cast<std::size_t>(i_position) - 1];
        mNowhere = Value();
        return mNowhere;
    }
    Value operator[](int i_position) const
    {
        return Holds(i_position) ? mValues[static_cast<std::size_t>(i_position) - 1] : Value();
    }

    void Append(Value i_value) { mValues.push_back(i_value); }
    void Append(CATRawColl const & i_tail)
    {
        std::vector<Value> const tail = i_tail.mValues; // i_tail may be this very collection
        mValues.insert(mValues.end(), tail.begin(), tail.end());
    }
    void RemoveAll() { mValues.clear(); }

    // Takes out every value that i_values holds; the rest keeps its order. n log m for n values here and m there.
    void Remove(CATRawColl const & i_values)
    {
        std::vector<Value> unwanted = i_values.mValues;
        std::sort(unwanted.begin(), unwanted.end());
        auto const isUnwanted = [&](Value v) { return std::binary_search(unwanted.begin(), unwanted.end(), v); };
        mValues.erase(std::remove_if(mValues.begin(), mValues.end(), isUnwanted), mValues.end());
    }

    int Locate(Value i_value) const // the first position that holds it; 0 if none does
    {
        auto const found = std::find(mValues.begin(), mValues.end(), i_value);
        return found == mValues.end() ? 0 : static_cast<int>(found - mValues.begin()) + 1;
    }

private:
    bool Holds(int i_position) const
    {
        return VOZ_ASSERTION(i_position >= 1 && i_position <= Size(), "i_position >= 1 && i_position <= Size()");
    }

    std::vector<Value> mValues;
    Value mNowhere = Value();
};

class CATRawCollint : public CATRawColl<int>
{
};

class CATRawColldouble : public CATRawColl<double>
{
};

#endif
