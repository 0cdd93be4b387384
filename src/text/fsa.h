// The pattern automaton: a deterministic recogniser compiled from ordered
// pattern lists, which the source reader runs to cut text into tokens.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// Token kinds reserved by the reader; no lexicon uses them.
inline constexpr int32_t TOKEN_END = 0x0E0F0000;      // no more text (or no source, or no automaton)
inline constexpr int32_t TOKEN_UNKNOWN = 0x0BAD0000;  // no pattern matched; also "state does not accept"

// Flag of an automaton built at run time and owned by one reader.
inline constexpr uint32_t FSA_OWNED = 1;

inline constexpr int FSA_MAX_STATES = 32767;       // state and transition counts are 16-bit signed
inline constexpr int FSA_MAX_TRANSITIONS = 32767;
inline constexpr int FSA_MAX_PATTERN_LENGTH = 255;  // the compiler works on a 256-byte copy

// A set of byte values: c is in the set when bit (c mod 8) of byte (c div 8) is 1.
struct CharSet {
    std::array<uint8_t, 32> bits{};

    bool Has(unsigned char c) const { return (bits[c >> 3] >> (c & 7)) & 1; }
    void Add(unsigned char c) { bits[c >> 3] = static_cast<uint8_t>(bits[c >> 3] | (1 << (c & 7))); }
    bool Empty() const;
    CharSet Intersection(const CharSet& other) const;
    void Remove(const CharSet& other);
    // Every byte value except c.
    static CharSet AllBut(unsigned char c);
    bool operator==(const CharSet&) const = default;
};

struct FsaTransition {
    uint16_t from;
    uint16_t to;
    CharSet set;
};

// One entry of a lexicon's ordered pattern list.
struct LexiconPattern {
    int32_t kind;
    const char* pattern;
};

class Fsa {
public:
    // State 0 (not accepting), no transitions, room for 2048 states and 4096 transitions.
    explicit Fsa(uint32_t flags = 0);

    int StateCount() const { return static_cast<int>(accept_.size()); }
    int TransitionCount() const { return static_cast<int>(transitions_.size()); }
    uint32_t Flags() const { return flags_; }
    // Kind accepted in state, or TOKEN_UNKNOWN when the state does not accept.
    int32_t Accept(int state) const { return accept_[static_cast<size_t>(state)]; }
    // The transitions as compiled, for checking the automaton's invariants.
    const FsaTransition& Transition(int index) const { return transitions_[static_cast<size_t>(index)]; }

    // The state that c leads to from state, or -1: one lookup in the state's row.
    int Next(int state, unsigned char c) const;

    // Compiles pattern so that text matching it is reported as kind (a later pattern ending in
    // the same state wins). Letters get their other-case twin unless caseSensitive. A pattern
    // that is malformed, longer than 255 characters or beyond the 16-bit limits is refused:
    // the result is false and the automaton is left exactly as it was.
    bool AddPattern(int32_t kind, const char* pattern, bool caseSensitive);

    // A private growable copy with FSA_OWNED set: same states and transitions in the same
    // order, with room for 1024 more states and 2048 more transitions.
    Fsa OwnedCopy() const;

    // Reorders the transition table so each state's transitions lie together, keeping their
    // relative order; what the automaton matches does not change.
    void GroupBySource();

private:
    friend class PatternInsertion;

    static constexpr uint16_t NO_TARGET = 0xFFFF;

    void EnsureRoomFor(int patternLength);
    // Points every character of set, leaving from, at to in the lookup rows.
    void SetTargets(int from, const CharSet& set, uint16_t to);
    // Rebuilds the per-state indexes from the transition table.
    void RebuildIndexes();

    std::vector<int32_t> accept_;
    std::vector<FsaTransition> transitions_;
    // Per-state indexes kept in step with the table: each state's transition indices in table
    // order (what the compiler walks), and one row of 256 targets per state (what Match reads).
    std::vector<std::vector<uint16_t>> outgoing_;
    std::vector<uint16_t> targets_;
    int stateCapacity_;
    int transitionCapacity_;
    uint32_t flags_;
};

// A constant lexicon: the patterns added in order to an empty automaton, case-insensitively,
// with the transitions then grouped by source state.
Fsa CompileLexicon(std::span<const LexiconPattern> patterns);
