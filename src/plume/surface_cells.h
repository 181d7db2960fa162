#pragma once

namespace orv {

// Last row i of a primitive of NI rows on which the effects work. The last rows of a screened cylinder are its screens,
// which stand for no real surface.
int LastRowOfEffects(double typeCode, int NI);

// Whether the effects know a primitive of this type.
bool HasEffects(double typeCode);

// Whether column j of NJ lies on the second face of a two-sided sheet. The first face has the columns up to the half.
bool OnSecondFace(double typeCode, int j, int NJ);

}  // namespace orv
