-- A swell on deep water, cut open. No drop of water travels with a wave: each goes round in a circle, once in every
-- period, and the circles shrink with depth. The crest is only where the tops of the circles are met just now.
--
-- This text is the body of a function. It runs once for every cell, finds the cell's values in variables (x, y, radius,
-- r, g, b and more) and changes them by assigning. There is nothing to return.

-- The scene gave these sliders names, so that the script need not know their numbers.
local height = GetFloat("height") -- of a crest over still water, in pixels
local length = GetFloat("length") -- from crest to crest, in pixels
local period = GetFloat("period") -- from crest to crest, in seconds

local turn = 2 * math.pi
local depth = yPart * gridHeight -- yPart is 0 in the first row and 1 in the last

-- How far a wave carries this drop from where it rests.
local function carry(height, length, period)
  local phase = turn * (x / length - time / period)
  local reach = height * math.exp(-turn * depth / length)
  return -reach * math.sin(phase), -reach * math.cos(phase) -- y grows downward: a crest is negative
end

-- Waves add up, so the swell may carry a ripple. On deep water a quarter of the length has half the period.
local swellX, swellY = carry(height, length, period)
local rippleX, rippleY = carry(height / 12, length / 4, period / 2)
x = x + swellX + rippleX
y = y + swellY + rippleY

-- Light falls in from above and is gone after a wavelength; crests catch the most of it.
local light = math.exp(-2.2 * depth / length)
local crest = math.max(0, -swellY / height) ^ 2
r = Lerp(0.03, 0.10, light) + 0.75 * crest ^ 3
g = Lerp(0.08, 0.56, light) + 0.40 * crest
b = Lerp(0.22, 0.88, light) + 0.12 * crest
radius = radius * Lerp(0.6, 1, light)

-- Cells are drawn row by row. The very first one, which lies outside of the picture, can be the night behind the others.
if i == 0 and j == 0 then
  x, y, radius = 0, 0, gridWidth
  r, g, b = 0.02, 0.03, 0.09
end
