-- A painter's hand: every cell is a stroke of the brush that takes its colour from a picture and follows its forms.

local amount = GetFloat("amount") -- 0: all strokes lie as the grid has them; 1: they follow the picture

-- GetLayer gives red, green, blue and alpha of the pixel at a place; both run from 0 to 1.
local function lightness(u, v)
  local red, green, blue = GetLayer("picture", u, v)
  return 0.3 * red + 0.6 * green + 0.1 * blue
end

-- How much lighter the picture grows to the right and downward, found from the cells around.
local besideX, besideY = 1 / xCount, 1 / yCount
local slopeX = lightness(xPart + besideX, yPart) - lightness(xPart - besideX, yPart)
local slopeY = lightness(xPart, yPart + besideY) - lightness(xPart, yPart - besideY)
local slope = Dist2D(0, 0, slopeX, slopeY)

-- The stroke lies at a right angle to that, along the edge, as a contour does on a map. A stroke looks the same after
-- half a turn, so it need never go further than a quarter, to whichever side is nearer.
local contour = math.deg(math.atan(slopeY, slopeX)) + 90
local turned = (contour - angle + 90) % 180 - 90

-- Where the picture is flat there is nothing to follow: the stroke keeps the angle that noise gave it.
local firm = amount * math.min(1, slope / 0.05)
angle = angle + turned * firm
scaleX = scaleX * Lerp(1, 1.25, firm)
scaleY = scaleY * Lerp(1, 0.8, firm)

-- No two dips of the brush are alike: GetRandom gives each cell a number of its own, here from -1 to 1.
local dip = 0.055 * GetRandom("dip", i, j)
local red, green, blue = GetLayer("picture", xPart, yPart)
r, g, b = red + dip, green + dip, blue + dip

-- The very first stroke is drawn below all the others. It primes the canvas.
if i == 0 and j == 0 then
  x, y, radius = 0, 0, gridWidth
  angle, scaleX, scaleY = 0, 100, 100
  r, g, b = 0.20, 0.16, 0.17
end
