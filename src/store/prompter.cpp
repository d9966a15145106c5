#include "prompter.h"

namespace {
// Answers every question with No and shows nothing: the safe choice for a
// program (or a test) that has not installed a real prompter.
class SilentPrompter final : public Prompter
{
public:
    void message(Icon, const QString &, const QString &) override {}
    bool confirm(Icon, const QString &, const QString &, Default) override { return false; }
};

SilentPrompter silent;
Prompter *installed = nullptr;
}  // namespace

Prompter &prompter()
{
    return installed ? *installed : silent;
}

void setPrompter(Prompter *p)
{
    installed = p;
}
