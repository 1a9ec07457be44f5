keep = keep or setmetatable({}, {__gc = function() GetLayer(2, 0, 0) GetPath(2, 0) error('late') end})
local ok = pcall(function() local c <close> = setmetatable({}, {__close = function() error({}) end}) error('first') end)
coroutine.wrap(function() coroutine.yield(GetFloat('b')) end)()
if i == 1 then pcall(GetPath, 2, 0.5) end
error(setmetatable({}, {__tostring = function() return 'text' end}))
