#pragma once
// The sprite and picture files. Until their stores exist, opening only makes
// sure that the files are there.

// Program error 2 if Kelmo.spr is missing.
void InitSprites();
// Program error 3 if Kelmo.pic is missing.
void InitPictures();
