#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace VantrelSDK {

/// A source of random numbers; the same seed gives the same numbers everywhere.
class ILRandGenerator {
  public:
    virtual ~ILRandGenerator() = default;
    virtual void SetSeed(unsigned seed) = 0;
    /// From min, included, to max, excluded, in steps of (max - min) / 2^32.
    virtual double RandDouble(float min, float max) = 0;
    /// Min and max included. 0x80000000 when max < min; min, without a draw, when they are equal.
    virtual int RandInt(int min, int max) = 0;
};

/// What the generators of 32-bit words have in common.
class LRandom32 : public ILRandGenerator {
  public:
    double RandDouble(float min, float max) override;
    int RandInt(int min, int max) override;

  protected:
    virtual uint32_t Draw() = 0;
};

/// G. Marsaglia's "Mother of All" generator: multiply with carry over four words, posted to
/// sci.stat.math in 1994. Starts with the seed 1.
class LRandomMother : public LRandom32 {
  public:
    LRandomMother() { LRandomMother::SetSeed(1); }
    void SetSeed(unsigned seed) override;

  protected:
    uint32_t Draw() override;

  private:
    /// The last four numbers, the newest first, and the carry.
    std::array<uint32_t, 5> words_;
};

/// MT19937 of Matsumoto and Nishimura: Mersenne Twister, ACM TOMACS 8(1), 1998, with their
/// initialisation of 2002. Starts with the seed 1.
class LRandomMersenne : public LRandom32 {
  public:
    LRandomMersenne() { LRandomMersenne::SetSeed(1); }
    void SetSeed(unsigned seed) override;
    /// Seeds with any number of words; none counts as a single 0.
    void SetSeedByArray(std::span<const unsigned> seeds);
    /// As RandInt, with every number exactly as likely: draws that would favour some are rejected.
    int RandIntX(int min, int max);

  protected:
    uint32_t Draw() override;

  private:
    void Init(uint32_t seed);
    void Discard(int draws);
    void Regenerate();

    static constexpr int kWords = 624;
    std::array<uint32_t, kWords> state_;
    int next_ = kWords;
    /// The range that lastLimit_ belongs to; 0 for none yet.
    uint64_t lastRange_ = 0;
    uint32_t lastLimit_ = 0;
};

}  // namespace VantrelSDK
