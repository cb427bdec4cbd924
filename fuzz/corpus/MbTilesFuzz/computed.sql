CREATE TABLE metadata (name, value AS (replace(name, 'a', zeroblob(100000))));
CREATE TABLE tiles (zoom_level, tile_column, tile_row, a, tile_data AS (a || a));
CREATE INDEX i ON tiles (hex(a));
INSERT INTO metadata (name) VALUES ('minzoom'), ('maxzoom');
INSERT INTO tiles VALUES (0,0,0,zeroblob(90000));
