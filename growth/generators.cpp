#include "growth/generators.h"

#include <cstring>

// The GNU C library's kind of state array: its first word is kFeedbackType + kTypes times the index of
// r[i - 3], the library's rear pointer, and 31 words follow; r[i - 31] stands kFeedbackLag words on, round
// the ring.
constexpr uint32_t kFeedbackType = 3;
constexpr uint32_t kTypes = 5;
// Draws that are compared before the library's generators count as known.
constexpr int kComparedDraws = 100;

GeneratorState generators;

// The library's own state array, while it is set aside to be read and written.
static char *librarystate = nullptr;

static bool TakeStates();
static void PutStatesBack();
static bool MatchesLibrary();

HeldGenerators::HeldGenerators()
{
    static const bool known = MatchesLibrary();
    if (known)
        TakeStates();
}

HeldGenerators::~HeldGenerators()
{
    if (generators.held)
        PutStatesBack();
}

// Returns false, nothing taken, where rand's state is not of the known kind.
static bool TakeStates()
{
    alignas(uint32_t) static char aside[(1 + kFeedbackWords) * sizeof(uint32_t)];
    static bool prepared = false;
    librarystate = prepared ? setstate(aside) : initstate(1, aside, sizeof aside);
    prepared = true;
    uint32_t words[1 + kFeedbackWords];
    memcpy(words, librarystate, sizeof words[0]);
    if (words[0] % kTypes != kFeedbackType) {
        setstate(librarystate);
        return false;
    }
    memcpy(words, librarystate, sizeof words);
    memcpy(generators.words, words + 1, sizeof generators.words);
    generators.oldest = static_cast<int>(words[0] / kTypes + kFeedbackLag) % kFeedbackWords;

    unsigned short any[3] = {0, 0, 0};
    const unsigned short *x = seed48(any);
    generators.congruence = x[0] | uint64_t{x[1]} << 16 | uint64_t{x[2]} << 32;
    generators.held = true;
    return true;
}

static void PutStatesBack()
{
    uint32_t words[1 + kFeedbackWords];
    const int rear = (generators.oldest - kFeedbackLag + kFeedbackWords) % kFeedbackWords;
    words[0] = kFeedbackType + kTypes * static_cast<uint32_t>(rear);
    memcpy(words + 1, generators.words, sizeof generators.words);
    memcpy(librarystate, words, sizeof words);
    setstate(librarystate);

    unsigned short x[3];
    for (int i = 0; i < 3; i++)
        x[i] = static_cast<unsigned short>(generators.congruence >> (16 * i));
    seed48(x);
    generators.held = false;
}

// Whether draws made here are those that the library makes from the same states. Leaves the library's states
// as they were.
static bool MatchesLibrary()
{
#ifdef __GLIBC__
    if (!TakeStates())
        return false;
    const GeneratorState start = generators;
    double uniform[kComparedDraws];
    int integer[kComparedDraws];
    for (int i = 0; i < kComparedDraws; i++) {
        uniform[i] = DrawUniform();
        integer[i] = DrawInteger();
    }
    generators = start;
    PutStatesBack();
    bool same = true;
    for (int i = 0; i < kComparedDraws; i++) {
        const double u = drand48();
        const int n = rand();
        same = same && u == uniform[i] && n == integer[i];
    }
    TakeStates();
    generators = start;
    PutStatesBack();
    return same;
#else
    return false; // state arrays of other libraries are laid out in other ways
#endif
}
