-- A flight through a tunnel. The script rolls the grid up: columns run round the tube, rows run into its depth, and the
-- colour of every tile depends on its distance from the camera.

local travel = GetFloat("travel") -- pixels flown so far
local turn = 2 * math.pi

-- The rings come nearer, and one that has been passed goes on at the far end: % gives what is left of a division, never
-- less than 0.
local depth = (gridHeight * j / yCount - travel) % gridHeight

-- The tube is as wide as makes the columns meet. It is twisted, and winds more the further away it is; both go by the
-- number of the ring and so travel with it.
local tube = gridWidth / turn
local ring = turn * j / yCount
local around = turn * (i + j % 2 / 2) / xCount + 1.5 * math.sin(ring)
local bend = (depth / gridHeight) ^ 2
x = tube * math.cos(around) + 260 * bend * math.sin(ring)
y = tube * math.sin(around) + 140 * bend * math.cos(ring)
z = depth

-- A tile lies flat on the wall: turned up about its vertical axis, then round the tube.
angle = math.deg(around)
angleY = 90

-- GetDistToCam takes a place in the grid, here where the tile is now. As a share of the way to the tunnel's end the
-- distance picks a colour: a gradient runs from 0 to 1 and holds its ends.
local far = GetDistToCam(x, y, z) / GetDistToCam(0, 0, gridHeight)
if j % 4 == 0 then
  -- Gradients are numbered unlike everything else. In scripts gradient 1 has the number 1, gradient 2 the number 3,
  -- gradient 3 the number 5 and so on, so this is what the scene calls Gradient.Custom2.
  r, g, b = GetGradient(3, far)
else
  r, g, b = GetGradient(1, far)
end

-- One tile serves as the dark at the end: far behind all others, facing the camera, and large enough.
if i == 0 and j == 0 then
  x, y, z = 0, 0, 2 * gridHeight
  angle, angleY, radius = 0, 0, 3 * gridHeight
  r, g, b = GetGradient(1, 1)
end
