-- A picture comes together: its tiles fly in and turn over, one after the other, each in its own good time.

local progress = GetFloat("progress") -- 0: nothing is there; 1: the picture is whole
local share = GetFloat("share") -- how much of that time one tile takes

-- Every tile has its turn. The turns sweep over the picture from the top left to the bottom right, but GetRandom gives
-- each cell a number of its own, here from 0 to 1, and luck has a say, too.
local luck = GetRandom("luck", i, j)
local turn = Lerp(0.8 * xPart + 0.2 * yPart, luck, 0.2)

-- How much of its own time has gone by, and what the curve that the user drew makes of that. Before its first and after
-- its last point a ramp holds its value, so there is no need to clamp.
local done = GetRamp("ease", (progress - (1 - share) * turn) / share)
local left = 1 - done

-- Tiles come from in front of the picture, each from a direction of its own, and turn over as they land.
local direction = 2 * math.pi * luck
x = x + left * (90 * math.cos(direction) + 60)
y = y + left * 120 * math.sin(direction)
z = z - left * 320
angleX = angleX + left * 120 * (luck - 0.5)
angleY = angleY + left * 180
a = a * math.min(1, 2.5 * done)

-- A tile that has not set out yet need not be drawn.
visible = done > 0
