-- A procession along a mask. The columns of the grid stand one behind the other on the path, its rows walk side by side.

local pace = GetFloat("pace") -- steps in a second
local narrow = GetFloat("narrow") -- size at the inner end of the way, as a share of the size at its start
local turn = 2 * math.pi

-- How far this cell has come, from 0 to 1, and round again. Every other row walks half a step behind.
local way = ((i - j % 2 / 2 + pace * time) / xCount) % 1

-- Inward everything shrinks, the steps as well, so that it looks the same all the way.
local size = narrow ^ way
local part = (1 - size) / (1 - narrow)

-- GetPath gives the point at a share of the path's length, in pixels of the layer. Two more points tell which way the
-- path runs there; beyond its ends the path stands still, so we look both ways.
local pathX, pathY = GetPath("way", part)
local backX, backY = GetPath("way", part - 0.002)
local aheadX, aheadY = GetPath("way", part + 0.002)
local length = Dist2D(backX, backY, aheadX, aheadY)
if length == 0 then
  length = 1 -- without a mask GetPath gives 0, 0
end
local alongX, alongY = (aheadX - backX) / length, (aheadY - backY) / length

-- Rows go to the side, at a right angle to the way, and the band breathes. Positions count from the middle of the grid,
-- which a script isn't told: the scene hands it over as a point.
local middleX, middleY = GetPoint2D("middle")
local breath = 1 + 0.2 * math.sin(turn * (5 * way - time / 2))
local aside = (yPart - 0.5) * gridHeight * size * breath
x = pathX - middleX - alongY * aside
y = pathY - middleY + alongX * aside

-- The first corner of a shape points upward, and angles are degrees that run clockwise.
angle = math.deg(math.atan(alongY, alongX)) + 90
radius = radius * size

-- Three cosines out of step make a ring of colours.
local function channel(shift)
  return 0.55 + 0.45 * math.cos(turn * (0.9 * way + 0.12 * yPart + shift))
end
r, g, b = channel(0.02), channel(0.33), channel(0.62)

-- Nobody is seen to appear or to vanish at the ends.
a = math.max(0, math.min(1, way / 0.03, (1 - way) / 0.08))
