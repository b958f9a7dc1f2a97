// Notes for the reader of ITO's listing.
#pragma once

#include "index/listing.h"

void PutCardsManual(Listing& listing);
void PutFeatures(Listing& listing);
// What the accuracy of the lines has to be.
void PutAccuracyNote(Listing& listing);
// Behind refined constants: what lines indexed and the figure of merit are.
void PutRefinementNote(Listing& listing);
// What a figure of merit is worth.
void PutMeritNote(Listing& listing);
// Behind the accepted lattices: how they are ordered, and which of them may be multiples.
void PutAcceptedNote(Listing& listing);
// Behind the special lattices.
void PutSpecialNote(Listing& listing);
