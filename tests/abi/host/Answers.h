#pragma once

#include <cstdio>

/// What the host was answered, and how often that was wrong.
class Answers
{
public:
    void expect(bool right, const char *what)
    {
        ++m_asked;
        if (!right) {
            ++m_wrong;
            std::printf("wrong: %s\n", what);
        }
    }
    bool areRight() const { return m_asked > 0 && m_wrong == 0; }

private:
    int m_asked = 0;
    int m_wrong = 0;
};
