CREATE TABLE metadata (name text, value text);
CREATE TABLE tiles (zoom_level integer, tile_column integer, tile_row integer, tile_data blob);
CREATE UNIQUE INDEX i ON tiles (zoom_level, tile_column, tile_row);
INSERT INTO metadata VALUES ('attribution','&copy; Karte'),('minzoom','0'),('maxzoom','1'),('format','png');
INSERT INTO tiles VALUES (0,0,0,x'89504e470d0a1a0a0000000d4948445200000002000000020802000000fdd49a73000000104944415478da63e03a2107440c100a0019fe03c14331b0dd0000000049454e44ae426082'),(1,0,1,x'89504e470d0a1a0a0000000d4948445200000002000000020802000000fdd49a73000000104944415478da63e03a2107440c100a0019fe03c14331b0dd0000000049454e44ae426082'),(1,1,0,x'00');
