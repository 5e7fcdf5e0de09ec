// FailingNew.h: allocations that ask for null instead of an exception, and get it when a test says so.
//
// While an object lives, the i_number-th such allocation of the program itself, from 1, is refused, and no other.

#ifndef FAILINGNEW_H
#define FAILINGNEW_H

class FailingNew
{
public:
    explicit FailingNew(int i_number);
    ~FailingNew();
    FailingNew(FailingNew const &) = delete;
    FailingNew & operator=(FailingNew const &) = delete;

    // A shared library of Windows keeps to its own operators, whatever the program has.
    static bool reachesTheLibrary();

    bool refused() const; // whether there were so many
};

#endif
