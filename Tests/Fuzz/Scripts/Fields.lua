x = x + 10 * xPart
y, z = y - time, z + frame
visible = (i + j) % 2 == 0
partsCount, spriteIndex = 3.7, '5'
r, g, b, a = nil, 1 / 0, 0 / 0, {}
