#pragma once

namespace Tool {

/// Makes Ctrl-C a wish instead of an end, for one scope: whoever waits asks whether it was pressed, and ends cleanly. A
/// second Ctrl-C ends the program. One at a time, on the main thread.
class Interrupt
{
public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt &) = delete;
    Interrupt &operator=(const Interrupt &) = delete;

    bool isRequested() const;

private:
    void (*m_former)(int);
};

} // namespace Tool
