#include "text/fsa.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

constexpr int STATE_GROWTH = 1024;
constexpr int TRANSITION_GROWTH = 2048;
// Guards against patterns whose insertion would recurse without end (a starred atom walked
// around a cycle of existing states) or take unbounded work (a starred atom that spreads over
// every path of a large automaton): such a pattern is refused. The toolkit's own lexicons and
// names need a few hundred steps at most.
constexpr int MAX_INSERT_DEPTH = 1024;
constexpr long MAX_INSERT_WORK = 1L << 20;  // transitions visited or copied

int GrownCapacity(int count, int step, int limit) { return std::min(count + step, limit); }

char OtherCase(char c) {
    if (c >= 'a' && c <= 'z') return static_cast<char>(c - 'a' + 'A');
    if (c >= 'A' && c <= 'Z') return static_cast<char>(c - 'A' + 'a');
    return c;
}

}  // namespace

bool CharSet::Empty() const {
    return std::all_of(bits.begin(), bits.end(), [](uint8_t byte) { return byte == 0; });
}

CharSet CharSet::Intersection(const CharSet& other) const {
    CharSet result;
    for (size_t i = 0; i < bits.size(); ++i) result.bits[i] = bits[i] & other.bits[i];
    return result;
}

void CharSet::Remove(const CharSet& other) {
    for (size_t i = 0; i < bits.size(); ++i) bits[i] = static_cast<uint8_t>(bits[i] & ~other.bits[i]);
}

CharSet CharSet::AllBut(unsigned char c) {
    CharSet result;
    result.bits.fill(0xFF);
    result.bits[c >> 3] = static_cast<uint8_t>(result.bits[c >> 3] & ~(1 << (c & 7)));
    return result;
}

// One run of the insertion of a pattern: places its atoms along existing transitions,
// splitting sets and cloning states where the new pattern diverges, and journals every
// change to existing entries so that a refused pattern can be undone completely.
class PatternInsertion {
public:
    PatternInsertion(Fsa& fsa, int32_t kind, const char* pattern, bool caseSensitive)
        : fsa_(fsa), kind_(kind), caseSensitive_(caseSensitive),
          oldStateCount_(fsa.StateCount()), oldTransitionCount_(fsa.TransitionCount()) {
        std::strcpy(buffer_, pattern);
    }

    bool Run() {
        Insert(0, 0);
        if (failed_) Undo();
        return !failed_;
    }

private:
    struct SavedTransition {
        int index;
        FsaTransition old;
    };
    struct SavedAccept {
        int state;
        int32_t old;
    };

    char At(int p) const { return buffer_[p]; }

    void AddChar(CharSet& set, char c) const {
        set.Add(static_cast<unsigned char>(c));
        if (!caseSensitive_) set.Add(static_cast<unsigned char>(OtherCase(c)));
    }

    // A class element or complemented character: c, or the character after a "\".
    // Returns the position after it, or -1 when the pattern ends first.
    int ReadElement(int p, char& c) const {
        if (At(p) == '\\') ++p;
        if (At(p) == 0) return -1;
        c = At(p);
        return p + 1;
    }

    // Reads the atom at p into set; returns the position after it, or -1 when malformed.
    int ReadAtom(int p, CharSet& set) const {
        char c = 0;
        switch (At(p)) {
        case '\\':
            if (At(p + 1) == 0) return -1;
            AddChar(set, At(p + 1));
            return p + 2;
        case '^':
            p = ReadElement(p + 1, c);
            if (p >= 0) set = CharSet::AllBut(static_cast<unsigned char>(c));
            return p;
        case '[':
            if (At(p + 1) == '^') {
                p = ReadElement(p + 2, c);
                if (p < 0) return -1;
                set = CharSet::AllBut(static_cast<unsigned char>(c));
                return At(p) == ']' ? p + 1 : p;
            }
            return ReadClass(p + 1, set);
        default:
            AddChar(set, At(p));
            return p + 1;
        }
    }

    // Elements separated by "|", ranges with "-", ended by any other (closing) character.
    int ReadClass(int p, CharSet& set) const {
        char pending = 0;
        p = ReadElement(p, pending);
        while (p >= 0) {
            char next = At(p);
            if (next == 0) return -1;
            if (next == '-') {
                char end = 0;
                p = ReadElement(p + 1, end);
                if (p < 0 || static_cast<unsigned char>(pending) >= static_cast<unsigned char>(end)) return -1;
                for (int c = static_cast<unsigned char>(pending); c < static_cast<unsigned char>(end); ++c)
                    AddChar(set, static_cast<char>(c));
                pending = end;
            } else {
                AddChar(set, pending);
                if (next != '|') return p + 1;
                p = ReadElement(p + 1, pending);
            }
        }
        return -1;
    }

    bool Enter() {
        if (++depth_ > MAX_INSERT_DEPTH) failed_ = true;
        return Spend();
    }

    bool Spend() {
        if (++work_ > MAX_INSERT_WORK) failed_ = true;
        return !failed_;
    }

    void Insert(int state, int p) {
        if (Enter()) InsertAtoms(state, p);
        --depth_;
    }

    void InsertAtoms(int state, int p) {
        while (!failed_) {
            if (At(p) == 0) {
                SetAccept(state, kind_);
                return;
            }
            CharSet atom;
            const int atomStart = p;
            p = ReadAtom(p, atom);
            if (p < 0) {
                failed_ = true;
                return;
            }
            if (At(p) == '+') {  // x+ is placed as x, then read again as x*
                buffer_[p] = '*';
                p = atomStart;
            }
            const bool star = At(p) == '*';
            if (!PlaceAlongExisting(state, atom, atomStart, p, star) || failed_) return;
            if (star) {
                Append(state, state, atom);
                ++p;
            } else {
                const int next = NewState(TOKEN_UNKNOWN);
                Append(state, next, atom);
                state = next;
            }
        }
    }

    // Follows or splits every transition of state that shares characters with atom, leaving
    // in atom the characters no transition took. False when nothing is left to place.
    bool PlaceAlongExisting(int state, CharSet& atom, int atomStart, int p, bool star) {
        bool rest = true;
        // Transitions appended meanwhile (also by the recursive calls) are visited too.
        for (size_t i = 0; i < fsa_.outgoing_[state].size() && Spend(); ++i) {
            const int index = fsa_.outgoing_[state][i];
            const CharSet set = fsa_.transitions_[index].set;
            const CharSet common = set.Intersection(atom);
            atom.Remove(set);
            rest = !atom.Empty();
            if (common.Empty()) continue;
            const int target = fsa_.transitions_[index].to;
            if (common == set && target == state) {
                if (star) {
                    Insert(state, p + 1);  // the loop already provides the starred atom
                } else {
                    const int twin = NewState(fsa_.Accept(state));
                    SetTarget(index, twin);
                    CopyTransitions(state, twin);
                    Insert(twin, p);
                }
            } else if (common == set) {
                Insert(target, star ? atomStart : p);
            } else {
                CharSet remaining = set;
                remaining.Remove(common);
                SetSet(index, remaining);
                if (!rest && star) {
                    Append(state, state, common);
                    Insert(state, p + 1);
                } else {
                    const int clone = NewState(fsa_.Accept(target));
                    CopyTransitions(target, clone);
                    Append(state, clone, common);
                    Insert(clone, star ? atomStart : p);
                }
            }
        }
        return rest;
    }

    int NewState(int32_t accept) {
        const int state = fsa_.StateCount();
        if (state >= FSA_MAX_STATES) {
            failed_ = true;
            return 0;
        }
        if (state >= fsa_.stateCapacity_) {
            fsa_.stateCapacity_ = GrownCapacity(state, STATE_GROWTH, FSA_MAX_STATES);
            fsa_.accept_.reserve(static_cast<size_t>(fsa_.stateCapacity_));
        }
        fsa_.accept_.push_back(accept);
        fsa_.outgoing_.emplace_back();
        fsa_.targets_.resize(fsa_.targets_.size() + 256, Fsa::NO_TARGET);
        return state;
    }

    void Append(int from, int to, const CharSet& set) {
        const int index = fsa_.TransitionCount();
        if (failed_ || index >= FSA_MAX_TRANSITIONS) {
            failed_ = true;
            return;
        }
        if (index >= fsa_.transitionCapacity_) {
            fsa_.transitionCapacity_ = GrownCapacity(index, TRANSITION_GROWTH, FSA_MAX_TRANSITIONS);
            fsa_.transitions_.reserve(static_cast<size_t>(fsa_.transitionCapacity_));
        }
        fsa_.transitions_.push_back({static_cast<uint16_t>(from), static_cast<uint16_t>(to), set});
        fsa_.outgoing_[from].push_back(static_cast<uint16_t>(index));
        fsa_.SetTargets(from, set, static_cast<uint16_t>(to));
    }

    // Gives clone a copy of every transition that leaves source, in table order.
    void CopyTransitions(int source, int clone) {
        for (size_t i = 0; i < fsa_.outgoing_[source].size() && Spend(); ++i) {
            const FsaTransition u = fsa_.transitions_[fsa_.outgoing_[source][i]];
            Append(clone, u.to, u.set);
        }
    }

    void SetAccept(int state, int32_t kind) {
        if (state < oldStateCount_) savedAccepts_.push_back({state, fsa_.accept_[state]});
        fsa_.accept_[state] = kind;
    }

    void SaveTransition(int index) {
        if (index < oldTransitionCount_) savedTransitions_.push_back({index, fsa_.transitions_[index]});
    }

    void SetTarget(int index, int to) {
        SaveTransition(index);
        FsaTransition& t = fsa_.transitions_[index];
        t.to = static_cast<uint16_t>(to);
        fsa_.SetTargets(t.from, t.set, t.to);
    }

    void SetSet(int index, const CharSet& set) {
        SaveTransition(index);
        FsaTransition& t = fsa_.transitions_[index];
        fsa_.SetTargets(t.from, t.set, Fsa::NO_TARGET);
        t.set = set;
        fsa_.SetTargets(t.from, t.set, t.to);
    }

    void Undo() {
        fsa_.transitions_.resize(static_cast<size_t>(oldTransitionCount_));
        fsa_.accept_.resize(static_cast<size_t>(oldStateCount_));
        fsa_.outgoing_.resize(static_cast<size_t>(oldStateCount_));
        fsa_.targets_.resize(static_cast<size_t>(oldStateCount_) * 256);
        for (auto it = savedTransitions_.rbegin(); it != savedTransitions_.rend(); ++it)
            fsa_.transitions_[it->index] = it->old;
        for (auto it = savedAccepts_.rbegin(); it != savedAccepts_.rend(); ++it) fsa_.accept_[it->state] = it->old;
        fsa_.RebuildIndexes();
    }

    Fsa& fsa_;
    const int32_t kind_;
    const bool caseSensitive_;
    const int oldStateCount_;
    const int oldTransitionCount_;
    char buffer_[FSA_MAX_PATTERN_LENGTH + 1];
    int depth_ = 0;
    long work_ = 0;
    bool failed_ = false;
    std::vector<SavedTransition> savedTransitions_;
    std::vector<SavedAccept> savedAccepts_;
};

Fsa::Fsa(uint32_t flags) : accept_{TOKEN_UNKNOWN}, outgoing_(1), targets_(256, NO_TARGET), stateCapacity_(2048),
                           transitionCapacity_(4096), flags_(flags) {
    accept_.reserve(static_cast<size_t>(stateCapacity_));
    transitions_.reserve(static_cast<size_t>(transitionCapacity_));
}

int Fsa::Next(int state, unsigned char c) const {
    const uint16_t target = targets_[static_cast<size_t>(state) * 256 + c];
    return target == NO_TARGET ? -1 : target;
}

void Fsa::SetTargets(int from, const CharSet& set, uint16_t to) {
    uint16_t* row = &targets_[static_cast<size_t>(from) * 256];
    for (int byte = 0; byte < 32; ++byte) {
        for (unsigned bits = set.bits[byte]; bits != 0; bits &= bits - 1) row[byte * 8 + std::countr_zero(bits)] = to;
    }
}

bool Fsa::AddPattern(int32_t kind, const char* pattern, bool caseSensitive) {
    const size_t length = pattern ? std::strlen(pattern) : FSA_MAX_PATTERN_LENGTH + 1;
    if (length > FSA_MAX_PATTERN_LENGTH) return false;
    EnsureRoomFor(static_cast<int>(length));
    return PatternInsertion(*this, kind, pattern, caseSensitive).Run();
}

void Fsa::EnsureRoomFor(int patternLength) {
    if (stateCapacity_ < StateCount() + 2 * patternLength) {
        stateCapacity_ = GrownCapacity(StateCount(), STATE_GROWTH, FSA_MAX_STATES);
        accept_.reserve(static_cast<size_t>(stateCapacity_));
    }
    if (transitionCapacity_ < TransitionCount() + 2 * patternLength) {
        transitionCapacity_ = GrownCapacity(TransitionCount(), TRANSITION_GROWTH, FSA_MAX_TRANSITIONS);
        transitions_.reserve(static_cast<size_t>(transitionCapacity_));
    }
}

Fsa Fsa::OwnedCopy() const {
    Fsa copy(*this);
    copy.flags_ |= FSA_OWNED;
    copy.stateCapacity_ = GrownCapacity(StateCount(), STATE_GROWTH, FSA_MAX_STATES);
    copy.transitionCapacity_ = GrownCapacity(TransitionCount(), TRANSITION_GROWTH, FSA_MAX_TRANSITIONS);
    copy.accept_.reserve(static_cast<size_t>(copy.stateCapacity_));
    copy.transitions_.reserve(static_cast<size_t>(copy.transitionCapacity_));
    return copy;
}

void Fsa::GroupBySource() {
    std::stable_sort(transitions_.begin(), transitions_.end(),
                     [](const FsaTransition& a, const FsaTransition& b) { return a.from < b.from; });
    RebuildIndexes();
}

void Fsa::RebuildIndexes() {
    for (auto& list : outgoing_) list.clear();
    std::fill(targets_.begin(), targets_.end(), NO_TARGET);
    for (size_t index = 0; index < transitions_.size(); ++index) {
        const FsaTransition& t = transitions_[index];
        outgoing_[t.from].push_back(static_cast<uint16_t>(index));
        SetTargets(t.from, t.set, t.to);
    }
}

Fsa CompileLexicon(std::span<const LexiconPattern> patterns) {
    Fsa fsa;
    for (const LexiconPattern& entry : patterns) fsa.AddPattern(entry.kind, entry.pattern, false);
    fsa.GroupBySource();
    return fsa;
}
