// Running means with the bits of the plain sums.
#pragma once

// Places that n means take: n in whole blocks of the vectorised loop.
int RoundedToBlocks(int n);

// mean[i] becomes the sum of z[i] to z[i+w-1] over `divisor` for i in [0, n), n being rounded up to
// whole blocks: z must hold n + w - 1 values and mean n, for the rounded n. Each sum takes its
// terms in rising order.
void RunningMeans(const float* __restrict z, int w, int divisor, float* __restrict mean, int n);
inline void RunningMeans(const float* __restrict z, int w, float* __restrict mean, int n) {
  RunningMeans(z, w, w, mean, n);
}
