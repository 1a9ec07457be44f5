end
sum, helper = 0, setmetatable({}, {__call = function(_, n) sum = sum + n return sum end, __gc = function() GetFloat(1) end})
function process(...) helper(1) return select(11, ...) end
do
