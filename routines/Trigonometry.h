#pragma once

/// Sine, cosine and their inverses. The C libraries of two systems differ in the last digit of
/// these; here each is the double nearest to the true value, so a field book has the same digits
/// on every system. (They are worked out to about 100 bits where 62 do not settle them: not the
/// nearest, but its neighbour, may come out where those cannot tell, once in 10^13 arguments, and
/// then on every system.)
///
/// Angles are radians. Special arguments give what the C library gives: a NaN for a NaN, for the
/// sine of an infinity, for the arc cosine of what is no cosine; ArcTan2 tells zeros by their
/// signs. Angles beyond 24 take ten times as long and more, the largest doubles, too.

double Sin(double angle);
double Cos(double angle);

/// In [-pi / 2, pi / 2].
double ArcTan(double tangent);

/// The angle of the vector (x, y) from the x axis towards the y axis, in [-pi, pi].
double ArcTan2(double y, double x);

/// In [0, pi].
double ArcCos(double cosine);
