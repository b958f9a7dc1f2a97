// Notes for the reader of ITO's listing.
#include "index/ito/notes.h"

void PutCardsManual(Listing& listing) {
  listing.Lines(
      R"(0cards of a problem. a blank field takes the value in parentheses.
 1. title. "end" behind the last problem
 2. columns  1  9: without this text            33     1: zero-error check
             2  1: text on special features     34     1: intermediate results
             3  1: lines with intensities       35-38  lines combined (3, 6)
             4  solutions printed (4)           39-42  zones combined (6, 6)
          5-10  1 wanted, -1 unwanted, 0:       43-44  number of trial lattices
                orthorhombic, monoclinic,       45-46  other than 5: counted lines
                triclinic                       47-48  solutions with a list (1)
         11-15  tolerance of zones, q (3.0)     49-50  1: test output
         16-20  of lattices, q (4.5)            51-70  molecular weight, density
         21-30  wavelength (1.5406)             71-78  tolerance of lines in degrees/100
         31-32  1: lines are combined by hand   79-80  stage of the test output
 3. ten columns each: zero correction in degrees two-theta, least figure of merit (4.0),
    least number of lines (14)
 4. lines, ten columns each, up to eight on a card: two-theta or q in rising order, d in
    falling order. with intensities: seven columns, two of intensity, one blank
 5. a blank card)");
}

void PutFeatures(Listing& listing) {
  listing.Lines(
      R"(0special features
 a line is left out if its value is made negative.
 column 32: behind the lines stand cards of ten columns each with two lines to be combined,
    in q, a third value makes them a zone (0.08 for one with a right angle), a fourth is the
    quality that the zone is given. a blank card ends them.
 columns 43-44: behind these, cards of ten columns each with the constants a, b, c, d, e, f of
    a lattice, q = hha + kkb + llc + kld + lhe + hkf. it is refined, nothing is searched for.
 columns 45-46: the lines are counted by a card of ten columns, and stand four to a card, in
    the first ten of twenty columns each.)");
}

void PutAccuracyNote(Listing& listing) {
  listing.Lines(
      R"(0whether a lattice is found depends on the lines at low angles, and on their accuracy: their
 number in a range of q tells how many wrong lattices fit them by accident. to tell the right
 one, the mean error of the first 20 lines should be)");
}

void PutRefinementNote(Listing& listing) {
  listing.Lines(
      R"(0lines indexed counts those of the first 20 that a calculated line falls upon within the
 tolerance. a line with several calculated ones nearby counts once.)");
}

void PutMeritNote(Listing& listing) {
  listing.Lines(
      R"(0the figure of merit is qobs(20)/(2*meandiff*ncalc): differences are those of indexed lines,
 ncalc is the number of lines calculated up to the 20th. with 19 or 20 lines indexed, a lattice
 above 30 is very likely the right one or a relative of it, and below 10 hardly ever.)");
}

void PutAcceptedNote(Listing& listing) {
  listing.Lines(
      R"(0the lattices stand in the order of lines indexed, and of the figure of merit where these are
 equal. a volume that is a multiple of another one's, with no more lines indexed, makes a
 multiple cell likely: the smaller one is to be preferred.)");
}

void PutSpecialNote(Listing& listing) {
  listing.Lines(
      R"(0higher symmetry follows from constants that are equal or simple multiples of each other. it is
 a matter of the metric alone: refine the cell of higher symmetry with all lines, and look
 at the absences, before it is accepted.)");
}
