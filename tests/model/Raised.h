#ifndef TESTS_MODEL_RAISED_H
#define TESTS_MODEL_RAISED_H

/// Raised for the length of a scope.
class Raised
{
public:
    explicit Raised(int& count) : count_(count) { ++count_; }
    ~Raised() { --count_; }
    Raised(Raised const&) = delete;
    Raised& operator=(Raised const&) = delete;

private:
    int& count_;
};

#endif
