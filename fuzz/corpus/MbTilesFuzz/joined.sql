CREATE TABLE map (zoom_level integer, tile_column integer, tile_row integer, tile_id text);
CREATE TABLE images (tile_id text PRIMARY KEY, tile_data blob);
CREATE VIEW tiles AS SELECT zoom_level, tile_column, (1 << zoom_level) - 1 - tile_row AS tile_row, tile_data FROM map JOIN images ON images.tile_id = map.tile_id;
CREATE TABLE metadata (name text, value text);
INSERT INTO metadata VALUES ('scheme','xyz'),('name','K');
INSERT INTO images VALUES ('a',x'89504e470d0a1a0a0000000d4948445200000002000000020802000000fdd49a73000000104944415478da63e03a2107440c100a0019fe03c14331b0dd0000000049454e44ae426082');
INSERT INTO map VALUES (0,0,0,'a'),(2,1,1,'a');
