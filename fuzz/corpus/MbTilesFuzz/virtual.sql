CREATE VIRTUAL TABLE tiles USING fts5(zoom_level, tile_column, tile_row, tile_data);
CREATE VIRTUAL TABLE metadata USING fts4(name, value);
INSERT INTO tiles VALUES (0, 0, 0, 'a');
