// Running means against the plain loop.
#include "crystal/runningmeans.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

namespace {

TEST(RunningMeans, EqualThePlainLoopBitForBit) {
  std::mt19937 random(11);
  std::uniform_real_distribution<float> counts(-20, 5000);
  for (const int n : {1, 63, 64, 65, 1000})
    for (const int w : {1, 2, 14, 15, 201})
      for (const int divisor : {w, w + 1}) {
        const int blocks = RoundedToBlocks(n);
        std::vector<float> z(blocks + w - 1), mean(blocks), plain(n);
        for (float& value : z) value = counts(random);
        for (int i = 0; i < n; ++i) {
          float sum = 0;
          for (int k = 0; k < w; ++k) sum += z[i + k];
          plain[i] = sum / static_cast<float>(divisor);
        }
        RunningMeans(z.data(), w, divisor, mean.data(), n);
        EXPECT_EQ(std::memcmp(mean.data(), plain.data(), n * sizeof(float)), 0)
            << n << " means of " << w;
      }
}

}  // namespace
