-- Asks Plovendix for subtitles of the playing file, on Alt+s. What is chosen there comes back through
-- plovendix-mpv-reply, which finds this player by the document identifier that is sent along.
local mp = require("mp")
local utils = require("mp.utils")

local REPLY_SCHEME = "plovendix-mpv"
local document = string.format("%d-%d", utils.getpid(), os.time())

-- A folder of this person's alone. plovendix-mpv-reply looks in the same place.
local function folder()
    local runtime = os.getenv("XDG_RUNTIME_DIR")
    if not runtime or runtime == "" then
        runtime = os.getenv("XDG_CACHE_HOME")
    end
    if not runtime or runtime == "" then
        runtime = utils.join_path(os.getenv("HOME") or "", ".cache")
    end
    return utils.join_path(runtime, "plovendix-mpv")
end

local note = utils.join_path(folder(), document)

local function run(...)
    local result = mp.command_native({name = "subprocess", args = {...}, playback_only = false, capture_stderr = true})
    return result.status == 0
end

-- Leaves word of this player's control socket, and opens one where the person has set none.
local function leave_note()
    if not run("mkdir", "-p", "-m", "700", folder()) then
        return false
    end
    local socket = mp.get_property("input-ipc-server", "")
    if socket == "" then
        socket = note .. ".socket"
        mp.set_property("input-ipc-server", socket)
    end
    local file = io.open(note, "w")
    if not file then
        return false
    end
    file:write(mp.command_native({"expand-path", socket}))
    file:close()
    return true
end

local function escaped(text)
    return (text:gsub("[^%w%-%._~/]", function(character)
        return string.format("%%%02X", character:byte())
    end))
end

-- The playing file's URL; nothing for a stream or when nothing plays.
local function file_url()
    local path = mp.get_property("path", "")
    if path == "" or path:find("^%a[%w+.-]+://") and not path:find("^file://") then
        return nil
    end
    if path:find("^file://") then
        return path
    end
    return "file://" .. escaped(utils.join_path(mp.get_property("working-directory", "/"), path))
end

local function search()
    local url = file_url()
    if not url then
        mp.osd_message("Plovendix: only files can be searched for")
        return
    end
    local request = string.format("plovendix://search?fileurl=%s&docid=%s&sender=%s", escaped(url), document, REPLY_SCHEME)
    mp.osd_message("Plovendix: looking for subtitles")
    mp.command_native_async({name = "subprocess", args = {"xdg-open", request}, playback_only = false, detach = true},
        function(success, result)
            if not success or result.status ~= 0 then
                mp.osd_message("Plovendix could not be started")
            end
        end)
end

if not leave_note() then
    mp.msg.warn("Subtitles cannot be sent back: " .. folder() .. " cannot be written to")
end
mp.register_event("shutdown", function()
    os.remove(note)
    os.remove(note .. ".socket")
end)
mp.add_key_binding("Alt+s", "search-subtitles", search)
